#include "tests/judgement/AlertSnapshots.hpp"

#include <gtest/gtest.h>

namespace ostrivane {

TEST(MemoryRules, tellOfAShareOfMemoryAtOnce) {
    AlertFeed feed({ruleAt(AlertKind::excessiveMemory, 25)});
    feed.snapshot.memory.total = 16 * GiB;
    feed.app("b").memory = 6 * GiB;
    feed.app("b").pids = {1, 2, 3};
    feed.app("a").memory = 4 * GiB;
    feed.app("below").memory = 4 * GiB - 1;
    feed.app("system").memory = 9 * GiB;
    EXPECT_EQ(told(feed.tick()), "critical b: Name of b is using 6.00 GB | That's 37% of this Mac's 16.0 GB of memory, "
                                 "across 3 processes.\n"
                                 "warning a: Name of a is using 4.00 GB | That's 25% of this Mac's 16.0 GB of memory, "
                                 "across 1 processes.\n");
    AlertFeed unknown({ruleAt(AlertKind::excessiveMemory, 0)});
    unknown.app("a").memory = GiB;
    EXPECT_EQ(told(unknown.tick()), "");
}

TEST(MemoryRules, tellOfALeakAndNotOfAStep) {
    AlertFeed feed(AlertKind::memoryGrowth, 30);
    constexpr std::uint64_t ticks = 90; // in 45 minutes
    std::string found;
    for (std::uint64_t tick = 0; tick <= 2 * ticks; ++tick) {
        feed.app("leak").memory = GiB + tick * GiB / ticks;
        feed.app("slow").memory = GiB + tick * GiB / ticks / 2;
        feed.app("step").memory = tick < ticks / 2 ? GiB : 3 * GiB;
        feed.app("shrinking").memory = 8 * GiB - tick * GiB / ticks;
        feed.app("system").memory = feed.app("leak").memory;
        EXPECT_EQ(found, tick <= ticks ? ""
                                       : "warning leak: Name of leak keeps using more memory | Up 1.00 GB in 45 "
                                         "min, now 2.00 GB.\n");
        found += told(feed.tick());
    }
}

TEST(MemoryRules, tellOfPressureThatLasts) {
    AlertFeed feed({defaultRule(AlertKind::memoryPressure)});
    auto& memory = feed.snapshot.memory;
    EXPECT_EQ(told(feed.pass(1000)), "");
    memory.pressure = MemoryPressure::warning;
    const double since = feed.snapshot.timestamp.seconds;
    EXPECT_EQ(told(feed.pass(300)), "");
    EXPECT_EQ(feed.engine.pressureElevatedSince(), since);
    memory.pressure = MemoryPressure::normal;
    feed.tick();
    EXPECT_EQ(feed.engine.pressureElevatedSince(), std::nullopt); // one such tick, and the time starts again
    memory.pressure = MemoryPressure::warning;
    memory.swapUsed = GiB;
    EXPECT_EQ(told(feed.pass(300)), "");
    EXPECT_EQ(told(feed.tick()),
              "warning system: Memory pressure has been elevated for 5 min | Swap in use: 1.00 GB.\n");
}

TEST(MemoryRules, countPressureFromItsFirstElevatedLevel) {
    AlertFeed feed({ruleAt(AlertKind::memoryPressure, 4)});
    feed.app("system").memory = 9 * GiB;
    feed.app("a").memory = GiB;
    feed.app("b").memory = 2 * GiB;
    feed.snapshot.memory.pressure = MemoryPressure::warning;
    EXPECT_EQ(told(feed.pass(600)), "");
    feed.snapshot.memory.pressure = MemoryPressure::critical;
    EXPECT_EQ(told(feed.tick()),
              "critical system: Memory pressure has been critical for 10 min | Swap in use: 0 B. Name "
              "of b is the largest app at 2.00 GB.\n");
}

TEST(MemoryRules, tellOfSwapThatGrew) {
    AlertFeed feed({defaultRule(AlertKind::swapGrowth)}, 30);
    feed.snapshot.memory.swapUsed = GiB;
    EXPECT_EQ(told(feed.pass(600)), "");
    feed.snapshot.memory.swapUsed = 3 * GiB - 1;
    EXPECT_EQ(told(feed.tick()), "");
    feed.snapshot.memory.swapUsed = 3 * GiB;
    EXPECT_EQ(told(feed.tick()), "warning system: Swap grew by 2.00 GB | Swap went from 1.00 GB to 3.00 GB in 10 min. "
                                 "The Mac is short on memory.\n");
}

} // namespace ostrivane
