#pragma once

#include "core/sampling/platform/Meminfo.hpp"
#include "core/sampling/platform/Memory.hpp"
#include "core/sampling/platform/PressureStall.hpp"
#include "core/sampling/platform/Vmstat.hpp"

#include <cstdint>
#include <optional>

namespace ostrivane {

/// What Linux tells about memory at one moment, file by file.
struct MemoryFigures {
    Meminfo meminfo;
    Vmstat::SwapTraffic swapTraffic;
    std::optional<PressureStall> pressure;  ///< absent where the kernel does not measure it
    std::uint64_t zram = 0;                 ///< bytes of memory that compressed block devices take
    bool swapIsMemory = false;              ///< whether every area of swap is such a device
    std::uint64_t reclaimableFileCache = 0; ///< bytes that file systems with a cache of their own would give back

    /// The same as pages of `pageSize` bytes. What no line names (kernel, page tables, drivers) counts as wired, and
    /// all kinds together with the free pages make the total. Absent without the total or the free memory.
    std::optional<MemoryReading> reading(std::uint64_t pageSize) const;
};

} // namespace ostrivane
