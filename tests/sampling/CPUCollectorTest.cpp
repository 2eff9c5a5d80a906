#include "core/sampling/CPUCollector.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

using Core = CPUTicks::Core; // user, system, idle, nice
constexpr CoreLayout plain{4, 0, 4};

CPUSnapshot between(const CPUTicks& before, const CPUTicks& now) {
    return CPUCollector::compute(before, now, plain, {});
}

TEST(CPUCollector, sharesAreThoseOfTheInterval) {
    const CPUSnapshot cpu =
        between({{{100, 100, 1000, 0}, {0, 0, 1000, 0}}, false}, {{{110, 120, 1060, 10}, {0, 0, 1100, 0}}, false});
    EXPECT_DOUBLE_EQ(cpu.cores[0].usage, 0.4);
    EXPECT_DOUBLE_EQ(cpu.cores[0].user, 0.2) << "niced work counts as user";
    EXPECT_DOUBLE_EQ(cpu.cores[0].system, 0.2);
    EXPECT_DOUBLE_EQ(cpu.cores[1].usage, 0);
    EXPECT_DOUBLE_EQ(cpu.usage, 0.2);
    EXPECT_DOUBLE_EQ(cpu.idle, 0.8);
    EXPECT_DOUBLE_EQ(cpu.user + cpu.system, cpu.usage);
}

TEST(CPUCollector, withoutABaselineShowsTheAverageSinceBoot) {
    const CPUTicks now{{{30, 20, 50, 0}, {0, 0, 0, 0}}, true};
    const CPUSnapshot cpu = CPUCollector::compute(std::nullopt, now, plain, {});
    EXPECT_DOUBLE_EQ(cpu.cores[0].usage, 0.5);
    EXPECT_DOUBLE_EQ(cpu.cores[1].usage, 0);
    EXPECT_DOUBLE_EQ(between({{{20, 20, 50, 0}}, true}, now).cores[1].usage, 0) << "a core that grew, and never ran";
    const CPUSnapshot grown = between({{}, true}, {{{30, 20, 50, 0}}, true});
    EXPECT_DOUBLE_EQ(grown.cores[0].usage, 0.5) << "a core that grew starts from zero";
    const CPUSnapshot shrunk = between({{{1, 1, 1, 1}, {1, 1, 1, 1}}, false}, {{{2, 1, 1, 1}}, false});
    EXPECT_EQ(shrunk.cores.size(), 1u);
}

TEST(CPUCollector, countersWrapOnlyWhereTheyHave32Bits) {
    const CPUSnapshot wrapped = between({{{4'294'967'290, 0, 0, 0}}, true}, {{{5, 0, 10, 0}}, true});
    EXPECT_DOUBLE_EQ(wrapped.cores[0].usage, 0.5) << "5 to the largest number and 5 beyond";
    const CPUSnapshot stepped = between({{{10, 10, 1000, 0}}, false}, {{{20, 20, 990, 0}}, false});
    EXPECT_DOUBLE_EQ(stepped.cores[0].usage, 1) << "idle stepped back a little";
    const CPUSnapshot beyond = between({{{5'000'000'000, 0, 0, 0}}, true}, {{{3, 0, 1, 0}}, true});
    EXPECT_DOUBLE_EQ(beyond.cores[0].usage, 0.75) << "a baseline that no such counter can have";
}

TEST(CPUCollector, aCoreThatGoesOrReturnsDidNothing) {
    const Core running{100, 100, 1000, 0}, off{};
    EXPECT_DOUBLE_EQ(between({{running, running}, false}, {{running, off}, false}).cores[1].usage, 0);
    const CPUSnapshot back = between({{{0, 0, 900, 0}, off}, false}, {{{0, 0, 1000, 0}, running}, false});
    EXPECT_DOUBLE_EQ(back.cores[1].usage, 0) << "its life before is no load of this tick";
    EXPECT_DOUBLE_EQ(back.idle, 1);
    const CPUSnapshot last = between({{{0, 0, 900, 0}}, false}, {{{0, 0, 1000, 0}, running}, false});
    EXPECT_DOUBLE_EQ(last.cores[1].usage, 0) << "off since the start, so it had no line at all";
}

TEST(CPUCollector, withNothingSpentTheMachineIsIdle) {
    const CPUTicks same{{{1, 2, 3, 4}}, true};
    for (const CPUSnapshot& cpu : {between(same, same), between({{}, true}, {{}, true})}) {
        EXPECT_EQ(cpu.idle, 1);
        EXPECT_EQ(cpu.usage, 0);
        EXPECT_EQ(cpu.logicalCoreCount, 4);
    }
}

TEST(CPUCollector, kindsComeFromTheTableThenFromTheLayout) {
    const CPUTicks ticks{{{}, {}, {}}, true};
    const auto kinds = [&](const CoreLayout& layout, const CoreKinds& known) {
        std::vector<CoreLoad::Kind> found;
        for (const CoreLoad& core : CPUCollector::compute(std::nullopt, ticks, layout, known).cores)
            found.push_back(core.kind);
        return found;
    };
    using enum CoreLoad::Kind;
    EXPECT_EQ(kinds({3, 0, 3}, {}), (std::vector{unknown, unknown, unknown}));
    EXPECT_EQ(kinds({1, 2, 3}, {}), (std::vector{efficiency, efficiency, performance}));
    EXPECT_EQ(kinds({1, 2, 3}, {{0, performance}}), (std::vector{performance, efficiency, performance}));
    EXPECT_EQ(kinds({3, 0, 3}, {{2, efficiency}}), (std::vector{unknown, unknown, efficiency}));
}

} // namespace
} // namespace ostrivane
