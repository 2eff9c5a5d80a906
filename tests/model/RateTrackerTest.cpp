#include "core/model/RateTracker.hpp"

#include "core/model/MachTime.hpp"

#include <gtest/gtest.h>

namespace ostrivane {

namespace {

using Tracker = RateTracker<std::uint64_t>;
using Counters = PidMap<std::uint64_t>;
using Rates = PidMap<double>;

} // namespace

TEST(RateTracker, needsTwoSamplesOfAProcess) {
    Tracker tracker;
    EXPECT_EQ(tracker.rates({{1, 100}}, 10), Rates{});
    EXPECT_EQ(tracker.rates({{1, 300}, {2, 7}}, 12), (Rates{{1, 100}}));
    EXPECT_EQ(tracker.rates({{1, 300}, {2, 8}}, 13), (Rates{{1, 0}, {2, 1}})); // an idle process is a zero, not a gap
}

TEST(RateTracker, givesNothingWithoutTimeButStillMovesItsBase) {
    Tracker tracker;
    tracker.rates({{1, 300}}, 12);
    EXPECT_EQ(tracker.rates({{1, 500}}, 12), Rates{});
    EXPECT_EQ(tracker.rates({{1, 510}}, 13), (Rates{{1, 10}}));
    EXPECT_EQ(tracker.rates({{1, 600}}, 5), Rates{}); // the clock stepped back
    EXPECT_EQ(tracker.rates({{1, 640}}, 7), (Rates{{1, 20}}));
}

TEST(RateTracker, startsAfreshWhenACounterFalls) {
    Tracker tracker;
    tracker.rates({{1, 1000}, {2, 50}}, 1);
    EXPECT_EQ(tracker.rates({{1, 10}, {2, 60}}, 2), (Rates{{2, 10}}));
    EXPECT_EQ(tracker.rates({{1, 20}, {2, 60}}, 3), (Rates{{1, 10}, {2, 0}}));
}

TEST(RateTracker, forgetsAProcessThatWasMissingOnce) {
    Tracker tracker;
    tracker.rates({{1, 100}, {2, 100}}, 1);
    EXPECT_EQ(tracker.rates({{2, 101}}, 2), (Rates{{2, 1}}));
    EXPECT_EQ(tracker.rates({{1, 900}, {2, 102}}, 3), (Rates{{2, 1}}));
    EXPECT_EQ(tracker.rates({}, 4), Rates{});
    EXPECT_EQ(tracker.rates({{1, 901}, {2, 103}}, 5), Rates{});
}

TEST(RateTracker, subtractsBeforeItGoesToFloatingPoint) {
    constexpr std::uint64_t large = (std::uint64_t{1} << 63) + 1; // as doubles both counters would be the same
    Tracker tracker;
    tracker.rates({{1, large}}, 0);
    EXPECT_EQ(tracker.rates({{1, large + 3}}, 2), (Rates{{1, 1.5}}));
}

TEST(RateTracker, followsProcessesThatComeAndGo) {
    Tracker tracker;
    Counters before;
    for (std::int32_t tick = 0; tick < 50; ++tick) {
        Counters current;
        for (std::int32_t pid = tick * 5; pid < tick * 5 + 100 + tick % 7 * 300; ++pid)
            current[pid] = static_cast<std::uint64_t>(pid) * static_cast<std::uint64_t>(tick);
        Rates expected;
        for (const auto& [pid, counter] : current)
            if (before.contains(pid))
                expected[pid] = pid;
        ASSERT_EQ(tracker.rates(current, tick), expected) << tick;
        before = current;
    }
}

TEST(MachTime, turnsTicksIntoSeconds) {
    EXPECT_DOUBLE_EQ(MachTime::seconds(1'440'000'000, MachTime::nanosPerTick(125, 3)), 60);
    EXPECT_EQ(MachTime::nanosPerTick(1, 1), 1);
    EXPECT_EQ(MachTime::nanosPerTick(125, 0), 1);
}

} // namespace ostrivane
