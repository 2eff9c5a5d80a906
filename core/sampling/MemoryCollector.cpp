#include "core/sampling/MemoryCollector.hpp"

#include "core/model/Saturating.hpp"

namespace ostrivane::MemoryCollector {

namespace {

MemoryPressure pressureAt(std::int64_t level) {
    if (level <= 1)
        return MemoryPressure::normal;
    return level < 4 ? MemoryPressure::warning : MemoryPressure::critical;
}

double rate(std::uint64_t now, std::uint64_t before, double seconds) {
    return seconds > 0 ? static_cast<double>(flooredDifference(now, before)) / seconds : 0;
}

} // namespace

MemorySnapshot compute(const MemoryReading& reading, const std::optional<VMCounters>& previous, double interval,
                       std::uint64_t pageSize, std::uint64_t total) {
    const VMCounters& pages = reading.counters;
    MemorySnapshot snapshot;
    snapshot.total = total;
    snapshot.app = saturatingProduct(flooredDifference(pages.internalPages, pages.purgeable), pageSize);
    snapshot.wired = saturatingProduct(pages.wired, pageSize);
    snapshot.compressed = saturatingProduct(pages.compressor, pageSize);
    snapshot.cached = saturatingProduct(saturatingSum(pages.externalPages, pages.purgeable), pageSize);
    snapshot.used = saturatingSum(saturatingSum(snapshot.app, snapshot.wired), snapshot.compressed);
    snapshot.free = flooredDifference(total, saturatingSum(snapshot.used, snapshot.cached));
    const SwapUsage swap = reading.swap.value_or(SwapUsage{});
    snapshot.swapTotal = swap.total;
    snapshot.swapUsed = swap.used;
    snapshot.swapIsMemory = swap.isMemory;
    snapshot.swapIns = pages.swapins;
    snapshot.swapOuts = pages.swapouts;
    if (previous) {
        snapshot.swapInRate = rate(pages.swapins, previous->swapins, interval);
        snapshot.swapOutRate = rate(pages.swapouts, previous->swapouts, interval);
    }
    snapshot.pressure = pressureAt(reading.pressureLevel.value_or(1));
    snapshot.availablePercent = reading.availablePercent.value_or(100);
    return snapshot;
}

} // namespace ostrivane::MemoryCollector
