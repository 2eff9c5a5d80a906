#pragma once

#include "core/sampling/HostInfo.hpp"

#include <optional>

namespace ostrivane {

/// What a machine can be asked about itself. Nothing here throws.
class Host {
public:
    virtual ~Host() = default;

    /// The facts that do not change. Asked once by whoever needs them.
    /// Source: Linux /proc, /sys and sysconf; macOS sysctl, Mach and the I/O registry.
    virtual HostInfo info() = 0;

    /// Seconds since boot, the time asleep included where the system tells it; absent when it tells nothing.
    /// Source: Linux CLOCK_BOOTTIME; macOS the wall clock less "kern.boottime", else the clock that stops in sleep.
    virtual std::optional<double> uptime() = 0;
};

} // namespace ostrivane
