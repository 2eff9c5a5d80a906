#pragma once

#include <functional>
#include <memory>

namespace ostrivane {

/// Whether the desktop prefers dark windows. Belongs to the main thread.
class DesktopAppearance {
public:
    virtual ~DesktopAppearance() = default;

    /// As far as is known by now; light where nothing tells.
    virtual bool prefersDark() const = 0;
    virtual void onChange(std::function<void()> changed) = 0;
};

std::unique_ptr<DesktopAppearance> nativeDesktopAppearance();

} // namespace ostrivane
