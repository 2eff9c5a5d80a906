#pragma once

#include "core/model/Described.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace ostrivane {

/// Time that each logical core spent since boot, in the system's ticks.
struct CPUTicks {
    /// The order of the counters of one core.
    enum Counter { user = 0, system = 1, idle = 2, nice = 3 };
    using Core = std::array<std::uint64_t, 4>;

    std::vector<Core> perCore; ///< in core index order; four zeros for a core that is switched off
    /// The counters have 32 bits and start again at 0 (macOS). Without it they have 64, and one that fell stepped back.
    bool wraps32 = true;

    friend bool operator==(const CPUTicks&, const CPUTicks&) = default;
};
BOOST_DESCRIBE_STRUCT(CPUTicks, (), (perCore, wraps32))
static_assert(describesEveryMember<CPUTicks>);

using LoadAverage = std::array<double, 3>; ///< over 1, 5 and 15 minutes

/// What a machine can be asked about its processor. Nothing here throws.
class Processor {
public:
    virtual ~Processor() = default;

    /// Source: Linux /proc/stat; macOS `host_processor_info`. Absent when nothing is handed out.
    virtual std::optional<CPUTicks> ticks() = 0;

    /// Source: Linux /proc/loadavg; macOS `getloadavg`. Absent when nothing is handed out.
    virtual std::optional<LoadAverage> loadAverage() = 0;
};

} // namespace ostrivane
