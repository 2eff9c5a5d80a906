#include "cli/WatchView.hpp"

#include "cli/Bar.hpp"
#include "cli/WatchState.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <gtest/gtest.h>

namespace ostrivane::cli {
namespace {

SystemSnapshot machineWith(int cores) {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{1'700'000'000});
    snapshot.macModel = "A Machine With a Rather Long Name That Nobody Wants to Read in Full \x1b[2J";
    snapshot.cpu.brand = "Processor 9000 with a marketing name of some length @ 4.20GHz";
    snapshot.cpu.logicalCoreCount = cores;
    snapshot.cpu.uptime = 90;
    snapshot.cpu.performanceCoreCount = cores / 2;
    snapshot.cpu.efficiencyCoreCount = cores - cores / 2;
    for (int index = 0; index < cores; ++index) {
        CoreLoad core;
        core.id = index;
        core.kind = index < cores / 2 ? CoreLoad::Kind::performance : CoreLoad::Kind::efficiency;
        core.usage = index % 2 == 0 ? 1 : 0.5;
        snapshot.cpu.cores.push_back(core);
    }
    snapshot.memory.total = 1000;
    snapshot.memory.app = snapshot.memory.used = 500;
    snapshot.memory.free = 500;
    return snapshot;
}

std::string textOf(const std::vector<StyledLine>& lines) {
    std::string text;
    for (const StyledLine& line : lines)
        text += plainText(line) + "\n";
    return text;
}

TEST(WatchView, fitsEveryWindow) {
    for (const int cores : {0, 1, 2, 16, 128, 1000})
        for (const int width : {1, 7, 20, 60, 80, 250})
            for (const int height : {1, 2, 10, 24, 60}) {
                const SystemSnapshot snapshot = machineWith(cores);
                const auto lines =
                    presentWatch(snapshot, {}, {.source = "Live", .remark = "", .width = width, .height = height});
                ASSERT_EQ(lines.size(), static_cast<std::size_t>(height));
                for (const StyledLine& line : lines) {
                    ASSERT_LE(columns(line), width) << plainText(line);
                    ASSERT_EQ(plainText(line).find('\x1b'), std::string::npos);
                }
            }
}

TEST(WatchView, showsEveryCoreAndItsKindAtSixtyColumns) {
    const std::string text =
        textOf(presentWatch(machineWith(16), {}, {.source = "", .remark = "", .width = 60, .height = 30}));
    for (int core = 0; core < 16; ++core) {
        const std::string want = (core < 10 ? "  " : " ") + std::to_string(core) + (core < 8 ? " P " : " E ");
        EXPECT_NE(text.find(want), std::string::npos) << want << "\n" << text;
    }
    for (const char* part : {"up 1 min", "2023-11-1", "App", "Wired", "Compressed", "Cached", "Free", "Pressure",
                             "Swap", "Load", "q quit"})
        EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
}

TEST(WatchView, shrinksTheCoresBeforeItLeavesMemoryOut) {
    const std::string text =
        textOf(presentWatch(machineWith(128), {}, {.source = "", .remark = "", .width = 80, .height = 24}));
    EXPECT_NE(text.find("Swap"), std::string::npos) << text;
    EXPECT_NE(text.find("P         █▅"), std::string::npos) << text;
}

TEST(WatchView, theRemarkIsSeen) {
    const std::string text =
        textOf(presentWatch(machineWith(2), {}, {.source = "x", .remark = "It ended.", .width = 60, .height = 20}));
    EXPECT_NE(text.find("It ended."), std::string::npos);
}

TEST(Bar, isAsLongAsTheLoad) {
    EXPECT_EQ(plainText(Bar::load(0, 4)), "····");
    EXPECT_EQ(plainText(Bar::load(1, 4)), "████");
    EXPECT_EQ(plainText(Bar::load(0.5, 4)), "██··");
    EXPECT_EQ(plainText(Bar::load(0.53125, 4)), "██▏·");
    for (const double odd : {-1.0, 2.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(columns(Bar::load(odd, 7)), 7);
    EXPECT_EQ(plainText(Bar::parts({0.25, 0.25, 0.5}, 8)), "██▓▓▒▒▒▒");
    EXPECT_EQ(columns(Bar::parts({0.9, 0.9, 0.9}, 10)), 10) << "more than the whole";
    EXPECT_EQ(columns(Bar::parts({0.14, 0.14, 0.14, 0.14, 0.14}, 10)), 7) << "errors of rounding do not add up";
}

} // namespace
} // namespace ostrivane::cli
