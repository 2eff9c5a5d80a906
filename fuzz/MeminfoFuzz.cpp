#include "core/model/Saturating.hpp"
#include "core/sampling/platform/ARCStats.hpp"
#include "core/sampling/platform/MemoryFigures.hpp"
#include "core/sampling/platform/ZRAMStat.hpp"
#include "fuzz/Require.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

using namespace ostrivane;

/// One text as each of the files about memory: whatever they hold, the kinds of pages make the total.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    MemoryFigures figures;
    figures.meminfo = Meminfo::parse(text);
    figures.swapTraffic = Vmstat::parse(text).value_or(Vmstat::SwapTraffic{});
    figures.pressure = PressureStall::parse(text);
    figures.reclaimableFileCache = ARCStats::reclaimable(text).value_or(0);
    figures.zram = ZRAMStat::memoryUsed(text).value_or(0);
    for (const std::uint64_t pageSize : {std::uint64_t(1), std::uint64_t(4096), std::uint64_t(65536)}) {
        const auto reading = figures.reading(pageSize);
        if (!reading)
            continue;
        const VMCounters& pages = reading->counters;
        const std::uint64_t used = pages.internalPages + pages.externalPages + pages.compressor + pages.wired;
        require(used == flooredDifference(*figures.meminfo.total / pageSize, pages.free));
        require(reading->availablePercent.value_or(0) >= 0 && reading->availablePercent.value_or(0) <= 100);
        const std::int64_t level = reading->pressureLevel.value_or(1);
        require(level == 1 || level == 2 || level == 4);
        require(!reading->swap || reading->swap->used <= reading->swap->total);
    }
    return 0;
}
