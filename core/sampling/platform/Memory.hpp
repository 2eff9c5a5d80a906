#pragma once

#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>

namespace ostrivane {

/// Counts of memory pages, and pages swapped since boot.
struct VMCounters {
    std::uint64_t free = 0;
    std::uint64_t active = 0;
    std::uint64_t inactive = 0;
    std::uint64_t speculative = 0;
    std::uint64_t wired = 0;
    std::uint64_t purgeable = 0;
    std::uint64_t compressor = 0;
    std::uint64_t internalPages = 0;
    std::uint64_t externalPages = 0;
    std::uint64_t swapins = 0;  ///< since boot
    std::uint64_t swapouts = 0; ///< since boot

    friend bool operator==(const VMCounters&, const VMCounters&) = default;
};
BOOST_DESCRIBE_STRUCT(VMCounters, (),
                      (free, active, inactive, speculative, wired, purgeable, compressor, internalPages, externalPages,
                       swapins, swapouts))
static_assert(describesEveryMember<VMCounters>);

struct SwapUsage {
    std::uint64_t total = 0; ///< bytes
    std::uint64_t used = 0;  ///< bytes
    bool isMemory = false;   ///< all of it is memory, compressed (zram): nothing is written to a disk

    friend bool operator==(const SwapUsage&, const SwapUsage&) = default;
};
BOOST_DESCRIBE_STRUCT(SwapUsage, (), (total, used, isMemory))
static_assert(describesEveryMember<SwapUsage>);

/// Everything about memory at one moment. What the system would not tell is absent.
struct MemoryReading {
    VMCounters counters;
    std::optional<SwapUsage> swap;
    std::optional<std::int64_t> pressureLevel;    ///< 1 normal, 2 warning, 4 critical
    std::optional<std::int64_t> availablePercent; ///< 0 to 100

    friend bool operator==(const MemoryReading&, const MemoryReading&) = default;
};
BOOST_DESCRIBE_STRUCT(MemoryReading, (), (counters, swap, pressureLevel, availablePercent))
static_assert(describesEveryMember<MemoryReading>);

/// What a machine can be asked about its memory. Nothing here throws.
class Memory {
public:
    virtual ~Memory() = default;

    /// Source: Linux /proc/meminfo, /proc/vmstat, /proc/pressure/memory, zram and ZFS; macOS `host_statistics64` and
    /// sysctl. Absent when the page counters are not handed out.
    virtual std::optional<MemoryReading> reading() = 0;
};

} // namespace ostrivane
