#include "core/sampling/platform/MemoryFigures.hpp"

#include "core/model/Saturating.hpp"

#include <algorithm>
#include <limits>

namespace ostrivane {

namespace {

enum Level : std::int64_t { normal = 1, warning = 2, critical = 4 };

/// Percents. The kernel has no levels of its own.
namespace Threshold {
constexpr double someStalled = 10;             // of the time: warning
constexpr double fullyStalled = 10;            // of the time: critical
constexpr std::int64_t lowAvailable = 5;       // below: at least warning, for stalls come late without swap
constexpr std::int64_t exhaustedAvailable = 3; // below, and no swap left either: critical
constexpr std::int64_t exhaustedSwap = 5;      // free, of all swap; below: none left
// Where stalls are not measured:
constexpr std::int64_t warningAvailable = 10; // below: warning
constexpr std::int64_t criticalAvailable = 5; // below: critical
} // namespace Threshold

/// `part` of `whole` in percent, rounded down, at most 100; `whole` is above 0.
std::int64_t percent(std::uint64_t part, std::uint64_t whole) {
    if (part >= whole)
        return 100;
    const bool fits = part <= std::numeric_limits<std::uint64_t>::max() / 100;
    return static_cast<std::int64_t>(fits ? part * 100 / whole : part / (whole / 100));
}

bool isSwapExhausted(const Meminfo& info) {
    if (!info.swapTotal || !info.swapFree)
        return false; // not told: no reason for an alarm
    return *info.swapTotal == 0 || percent(*info.swapFree, *info.swapTotal) < Threshold::exhaustedSwap;
}

std::int64_t measuredLevel(const PressureStall& stall) {
    if (stall.full >= Threshold::fullyStalled)
        return critical;
    return stall.some >= Threshold::someStalled ? warning : normal;
}

std::int64_t floorLevel(std::int64_t available, const Meminfo& info) {
    if (available < Threshold::exhaustedAvailable && isSwapExhausted(info))
        return critical;
    return available < Threshold::lowAvailable ? warning : normal;
}

std::int64_t levelWithoutMeasure(std::int64_t available) {
    if (available < Threshold::criticalAvailable)
        return critical;
    return available < Threshold::warningAvailable ? warning : normal;
}

std::optional<std::int64_t> pressureLevel(const MemoryFigures& figures, std::optional<std::int64_t> available) {
    if (!figures.pressure)
        return available ? std::optional(levelWithoutMeasure(*available)) : std::nullopt;
    const std::int64_t level = measuredLevel(*figures.pressure);
    return available ? std::max(level, floorLevel(*available, figures.meminfo)) : level;
}

std::optional<SwapUsage> swapUsage(const MemoryFigures& figures) {
    const Meminfo& info = figures.meminfo;
    if (!info.swapTotal || !info.swapFree)
        return std::nullopt;
    return SwapUsage{.total = *info.swapTotal,
                     .used = flooredDifference(*info.swapTotal, *info.swapFree),
                     .isMemory = figures.swapIsMemory};
}

VMCounters counters(const MemoryFigures& figures, std::uint64_t pageSize) {
    const Meminfo& info = figures.meminfo;
    const std::uint64_t shared = info.shared.value_or(0);
    // Shared memory and tmpfs are counted as cached by the kernel, but can only go to swap.
    const std::uint64_t internal = saturatingSum(info.anonymous.value_or(0), shared);
    const std::uint64_t kernel = info.kernelReclaimable.value_or(info.slabReclaimable.value_or(0));
    const std::uint64_t external =
        saturatingSum(saturatingSum(flooredDifference(info.cached.value_or(0), shared), info.buffers.value_or(0)),
                      saturatingSum(kernel, figures.reclaimableFileCache));
    VMCounters pages;
    pages.free = info.free.value_or(0) / pageSize;
    pages.active = info.active.value_or(0) / pageSize;
    pages.inactive = info.inactive.value_or(0) / pageSize;
    // In a container some lines tell about it and others about the whole machine: no kind is more than what is left.
    std::uint64_t left = flooredDifference(info.total.value_or(0) / pageSize, pages.free);
    const auto take = [&](std::uint64_t bytes) {
        const std::uint64_t taken = std::min(bytes / pageSize, left);
        left -= taken;
        return taken;
    };
    pages.externalPages = take(external);
    pages.compressor = take(saturatingSum(info.zswap.value_or(0), figures.zram));
    pages.internalPages = take(internal);
    pages.wired = left;
    pages.swapins = figures.swapTraffic.in;
    pages.swapouts = figures.swapTraffic.out;
    return pages;
}

} // namespace

std::optional<MemoryReading> MemoryFigures::reading(std::uint64_t pageSize) const {
    if (pageSize == 0 || meminfo.total.value_or(0) == 0 || !meminfo.free)
        return std::nullopt;
    MemoryReading reading;
    reading.counters = counters(*this, pageSize);
    reading.swap = swapUsage(*this);
    if (meminfo.available)
        reading.availablePercent = percent(saturatingSum(*meminfo.available, reclaimableFileCache), *meminfo.total);
    reading.pressureLevel = pressureLevel(*this, reading.availablePercent);
    return reading;
}

} // namespace ostrivane
