#include "core/sampling/MemoryCollector.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace ostrivane {
namespace {

constexpr std::uint64_t pageSize = 4096;

MemorySnapshot compute(const VMCounters& counters, std::uint64_t totalPages) {
    return MemoryCollector::compute({.counters = counters, .swap = {}, .pressureLevel = {}, .availablePercent = {}},
                                    std::nullopt, 0, pageSize, totalPages * pageSize);
}

TEST(MemoryCollector, partsAddUpToTheTotal) {
    const MemorySnapshot memory =
        compute({.wired = 10, .purgeable = 5, .compressor = 7, .internalPages = 40, .externalPages = 20}, 100);
    EXPECT_EQ(memory.app, 35 * pageSize);
    EXPECT_EQ(memory.cached, 25 * pageSize) << "what may be dropped at once is cached, not used";
    EXPECT_EQ(memory.used, (35 + 10 + 7) * pageSize);
    EXPECT_EQ(memory.free, 23 * pageSize);
    EXPECT_EQ(memory.app + memory.wired + memory.compressed + memory.cached + memory.free, memory.total);
    const MemorySnapshot others = compute({.free = 9, .active = 9, .inactive = 9, .speculative = 9}, 100);
    EXPECT_EQ(others.used + others.cached, 0u) << "these counters take no part";
}

TEST(MemoryCollector, nothingGoesBelowZeroOrOver) {
    EXPECT_EQ(compute({.purgeable = 9, .internalPages = 4}, 100).app, 0u);
    EXPECT_EQ(compute({.wired = 80, .externalPages = 40}, 100).free, 0u);
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    const MemorySnapshot absurd = compute({.wired = most, .internalPages = most, .externalPages = most}, 100);
    EXPECT_EQ(absurd.used, most) << "a damaged counter shows as absurd, not as small";
    EXPECT_EQ(absurd.free, 0u);
}

TEST(MemoryCollector, swapRatesNeedTimeAndACounterThatGrew) {
    MemoryReading reading;
    reading.counters = {.swapins = 100, .swapouts = 50};
    const VMCounters before{.swapins = 80, .swapouts = 60};
    const auto rates = [&](const std::optional<VMCounters>& previous, double interval) {
        const MemorySnapshot memory = MemoryCollector::compute(reading, previous, interval, pageSize, 0);
        return std::pair(memory.swapInRate, memory.swapOutRate);
    };
    EXPECT_EQ(rates(before, 2), std::pair(10.0, 0.0));
    EXPECT_EQ(rates(before, 0), std::pair(0.0, 0.0));
    EXPECT_EQ(rates(before, -5), std::pair(0.0, 0.0));
    EXPECT_EQ(rates(std::nullopt, 2), std::pair(0.0, 0.0));
}

TEST(MemoryCollector, pressureFollowsTheLevelAndAbsenceIsMild) {
    const auto at = [](std::optional<std::int64_t> level) {
        return MemoryCollector::compute({.counters = {}, .swap = {}, .pressureLevel = level, .availablePercent = 40},
                                        std::nullopt, 0, pageSize, 0)
            .pressure;
    };
    EXPECT_EQ(at(0), MemoryPressure::normal);
    EXPECT_EQ(at(1), MemoryPressure::normal);
    EXPECT_EQ(at(2), MemoryPressure::warning);
    EXPECT_EQ(at(3), MemoryPressure::warning) << "no kernel says so";
    EXPECT_EQ(at(4), MemoryPressure::critical);
    EXPECT_EQ(at(5), MemoryPressure::critical);
    EXPECT_EQ(at(std::nullopt), MemoryPressure::normal);
    const MemorySnapshot silent = MemoryCollector::compute({}, std::nullopt, 0, pageSize, 0);
    EXPECT_EQ(silent.availablePercent, 100);
    EXPECT_EQ(silent.swapTotal + silent.swapUsed, 0u);
    const MemorySnapshot swapping = MemoryCollector::compute(
        {.counters = {}, .swap = SwapUsage{10, 4}, .pressureLevel = {}, .availablePercent = 3}, std::nullopt, 0, 1, 0);
    EXPECT_EQ(swapping.swapTotal, 10u);
    EXPECT_EQ(swapping.swapUsed, 4u);
    EXPECT_EQ(swapping.availablePercent, 3);
}

} // namespace
} // namespace ostrivane
