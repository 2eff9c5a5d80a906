#pragma once

#include "core/model/Described.hpp"
#include "core/model/PidMap.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// What a driver tells about its chip at one moment. Whatever it does not tell is absent.
struct AcceleratorStatistics {
    std::optional<double> devicePercent;          ///< how busy the chip is as a whole
    std::optional<double> rendererPercent;        ///< the part that draws
    std::optional<double> tilerPercent;           ///< the part that sorts what is to be drawn into tiles
    std::optional<std::uint64_t> memoryInUse;     ///< bytes
    std::optional<std::uint64_t> memoryAllocated; ///< bytes

    friend bool operator==(const AcceleratorStatistics&, const AcceleratorStatistics&) = default;
};
BOOST_DESCRIBE_STRUCT(AcceleratorStatistics, (),
                      (devicePercent, rendererPercent, tilerPercent, memoryInUse, memoryAllocated))
static_assert(describesEveryMember<AcceleratorStatistics>);

/// One graphics chip. One that only puts a picture on a screen (a virtual or a server's one) has no statistics; one
/// whose driver keeps its figures to itself has empty ones; one that sleeps is busy for 0 percent.
struct AcceleratorReading {
    std::optional<std::string> name;
    std::optional<AcceleratorStatistics> statistics;

    friend bool operator==(const AcceleratorReading&, const AcceleratorReading&) = default;
};
BOOST_DESCRIBE_STRUCT(AcceleratorReading, (), (name, statistics))
static_assert(describesEveryMember<AcceleratorReading>);

/// What a machine can be asked about its graphics chips. Nothing here throws.
class Graphics {
public:
    virtual ~Graphics() = default;

    /// In the system's order; empty when there is none.
    /// Source: Linux /sys/class/drm, /proc/PID/fdinfo and NVML; macOS "IOAccelerator".
    virtual std::vector<AcceleratorReading> accelerators() = 0;

    /// Nanoseconds that each process kept chips busy since it began, or since it was first seen: only what is added
    /// between two readings means something. A process that holds no chip has no entry.
    /// Source: as above; macOS the clients of "IOAccelerator".
    virtual PidMap<std::uint64_t> processTimes() = 0;

    /// Whether someone looks at the page on graphics. Without it, a chip that the question alone would keep awake is
    /// not asked. Nobody looks until told so.
    virtual void setPageShown(bool /*shown*/) {}
};

} // namespace ostrivane
