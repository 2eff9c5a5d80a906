#pragma once

#include "core/sampling/Collectors.hpp"

#include <functional>
#include <memory>

namespace ostrivane {

/// What the desktop knows of running applications.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Hands over the running applications, now and whenever one begins or ends; on the main thread. Never calls where
    /// no desktop can be asked: there the engine finds them among the processes.
    virtual void observe(std::function<void(RunningApps)> changed) = 0;
};

std::unique_ptr<Workspace> nativeWorkspace();

} // namespace ostrivane
