#pragma once

#include "core/sampling/platform/Applications.hpp"
#include "core/sampling/platform/Files.hpp"
#include "core/sampling/platform/Graphics.hpp"
#include "core/sampling/platform/Host.hpp"
#include "core/sampling/platform/Memory.hpp"
#include "core/sampling/platform/Platform.hpp"
#include "core/sampling/platform/Processes.hpp"
#include "core/sampling/platform/Processor.hpp"
#include "core/sampling/platform/Sockets.hpp"
#include "core/sampling/platform/SystemProcesses.hpp"

namespace ostrivane {

/// One machine, by subject. There are three: the one the program runs on (Linux or macOS), and one that answers from a
/// recording. Questions come from one thread at a time.
class Machine {
public:
    virtual ~Machine() = default;

    /// Whose rules hold for what it answers.
    virtual Platform platform() const = 0;

    virtual Host& host() = 0;
    virtual Processor& processor() = 0;
    virtual Memory& memory() = 0;
    virtual Graphics& graphics() = 0;
    virtual Processes& processes() = 0;
    virtual SystemProcesses& systemProcesses() = 0;
    virtual Sockets& sockets() = 0;
    virtual Applications& applications() = 0;
    virtual Files& files() = 0;
};

} // namespace ostrivane
