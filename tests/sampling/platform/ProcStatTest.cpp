#include "core/sampling/platform/ProcStat.hpp"

#include "core/sampling/platform/CPUList.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace ostrivane {

namespace {

using Core = CPUTicks::Core;
constexpr Core off{};

std::optional<CPUTicks> parse(std::string_view text, std::size_t seen = 0, std::size_t limit = 16) {
    return ProcStat::parse(text, {.seen = seen, .limit = limit});
}

} // namespace

TEST(ProcStat, sortsTheColumnsIntoTheFourCounters) {
    const auto ticks = parse("cpu  9 9 9 9 9 9 9 9 9 9\n"
                             "cpu0 1000 200 30 40000 5000 600 70 8 999 99\n"
                             "intr 5 1 2\n");
    ASSERT_TRUE(ticks);
    ASSERT_EQ(ticks->perCore.size(), 1u);
    const Core& core = ticks->perCore[0];
    EXPECT_EQ(core[CPUTicks::user], 1000u) << "guests' time is in it already";
    EXPECT_EQ(core[CPUTicks::nice], 200u);
    EXPECT_EQ(core[CPUTicks::system], 30u + 600 + 70 + 8) << "interrupts and stolen time are system time";
    EXPECT_EQ(core[CPUTicks::idle], 45000u) << "waiting for a disk is idle";
    EXPECT_FALSE(ticks->wraps32);
}

TEST(ProcStat, takesTheShortLinesOfOldKernels) {
    EXPECT_EQ(parse("cpu0 1 2 3 4\n")->perCore, (std::vector<Core>{{1, 3, 4, 2}}));
    EXPECT_EQ(parse("cpu0 1 2 3 4 50")->perCore, (std::vector<Core>{{1, 3, 54, 2}}));
}

TEST(ProcStat, keepsTheIndexOfCoresBehindOneThatIsOff) {
    const std::string_view text = "cpu0 1 1 1 1\ncpu3 4 4 4 4\n";
    EXPECT_EQ(parse(text)->perCore, (std::vector<Core>{{1, 1, 1, 1}, off, off, {4, 4, 4, 4}}));
    EXPECT_EQ(parse(text, 6)->perCore, (std::vector<Core>{{1, 1, 1, 1}, off, off, {4, 4, 4, 4}, off, off}))
        << "the last ones were seen before and may be off now";
    EXPECT_EQ(parse("cpu3 4 4 4 4\ncpu1 2 2 2 2\n")->perCore,
              (std::vector<Core>{off, {2, 2, 2, 2}, off, {4, 4, 4, 4}}));
}

TEST(ProcStat, believesNoCoreThatTheMachineCannotHave) {
    const std::string_view text = "cpu0 1 1 1 1\ncpu99999999 1 1 1 1\ncpu18446744073709551615 1 1 1 1\ncpu4 1 1 1 1\n";
    EXPECT_EQ(parse(text, 0, 4)->perCore.size(), 1u);
    EXPECT_EQ(parse(text, 0, std::numeric_limits<std::size_t>::max())->perCore.size(), 5u);
    EXPECT_LE(
        parse(text, std::numeric_limits<std::size_t>::max(), std::numeric_limits<std::size_t>::max())->perCore.size(),
        static_cast<std::size_t>(CPUList::limit));
    EXPECT_FALSE(parse(text, 0, 0));
}

TEST(ProcStat, givesNothingForTextWithoutAWholeCore) {
    for (const char* text :
         {"", "\n\n", "cpu  1 2 3 4 5 6 7 8\n", "cpu0", "cpu0 1 2 3\n", "cpu0 1 2 x 4\n", "cpu0 -1 2 3 4\n",
          "cpu-1 1 2 3 4\n", "cpufreq 1 2 3 4\n", "intr 1 2 3 4\n", "cpu0 99999999999999999999 1 1 1\n"})
        EXPECT_FALSE(parse(text)) << text;
    EXPECT_EQ(parse("cpu0 1 2 3\ncpu1 1 1 1 1\n")->perCore, (std::vector<Core>{off, {1, 1, 1, 1}}));
}

TEST(ProcStat, sumsOfHostileCountersStopAtTheLimit) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    const auto ticks = parse("cpu0 1 1 18446744073709551615 18446744073709551615 1 1 18446744073709551615 7\n");
    ASSERT_TRUE(ticks);
    EXPECT_EQ(ticks->perCore[0], (Core{1, most, most, 1}));
}

} // namespace ostrivane
