#include "core/attribution/Aggregator.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {
namespace {

ProcessSnapshot processOf(std::int32_t pid, std::string key, std::uint64_t memory, std::optional<double> start = {}) {
    ProcessSnapshot process;
    process.pid = pid;
    process.appKey = std::move(key);
    process.memory = memory;
    if (start)
        process.startTime = Date{*start};
    return process;
}

class AggregatedApplications : public testing::Test {
protected:
    std::vector<ApplicationSnapshot> sum(const std::vector<ProcessSnapshot>& processes, bool network = true,
                                         bool gpu = true) {
        return Aggregator::applications(processes, bundles, {{"/Applications/Foo.app", 77}}, network, gpu);
    }

    BundleInfoCache bundles{"macOS System", [](const std::string&) {
                                return BundleFacts{{"Foo"}, "com.example.foo", {}};
                            }};
};

TEST_F(AggregatedApplications, sumWhatTheirProcessesUse) {
    auto first = processOf(30, "/Applications/Foo.app", 100, 50),
         second = processOf(20, "/Applications/Foo.app", 11, 40);
    first.cpu = 0.5;
    second.cpu = 0.25;
    first.netInRate = 10;
    second.netInRate = 5;
    first.netOutRate = 1;
    second.powerW = 2;
    first.threads = 4;
    second.isRestricted = true;
    first.diskReadRate = second.diskReadRate = 3;
    second.diskWriteRate = 8;
    second.gpu = 0.5;
    const auto apps = sum({first, processOf(9, "exe:node", 500), second});
    ASSERT_EQ(apps.size(), 2U);
    EXPECT_EQ(apps[0].key, "exe:node"); // most memory first
    ApplicationSnapshot want;
    want.key = *(want.bundlePath = "/Applications/Foo.app");
    want.name = "Foo";
    want.bundleID = "com.example.foo";
    want.pids = {20, 30};
    want.cpu = 0.75;
    want.memory = 111;
    want.diskReadRate = 6;
    want.diskWriteRate = 8;
    want.netInRate = 15;
    want.netOutRate = 1;
    want.powerW = 2;
    want.gpu = 0.5;
    want.threads = 4;
    want.startTime = Date{40};
    want.isRunningApp = want.hasRestricted = true;
    want.mainPID = 77; // the desktop's word before the earliest start
    EXPECT_EQ(apps[1], want);
}

TEST_F(AggregatedApplications, tellNothingUsedFromNothingKnown) {
    const auto measured = sum({processOf(5, "exe:a", 1)})[0];
    EXPECT_EQ(measured.netInRate, 0.0);
    EXPECT_EQ(measured.netOutRate, 0.0);
    EXPECT_EQ(measured.gpu, 0.0);
    EXPECT_FALSE(measured.powerW || measured.startTime || measured.bundlePath || measured.bundleID);
    auto busy = processOf(5, "exe:a", 1);
    busy.netInRate = busy.netOutRate = busy.gpu = 7;
    const auto unknown = sum({busy}, false, false)[0];
    EXPECT_FALSE(unknown.netInRate || unknown.netOutRate || unknown.gpu);
}

TEST_F(AggregatedApplications, stopAtTheLargestMemoryInsteadOfStartingAgain) {
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(sum({processOf(1, "exe:a", most - 1), processOf(2, "exe:a", 5)})[0].memory, most);
}

TEST_F(AggregatedApplications, haveTheEarliestProcessAsTheirMainOne) {
    const auto mainOf = [&](const std::vector<ProcessSnapshot>& processes) { return sum(processes)[0].mainPID; };
    EXPECT_EQ(mainOf({processOf(3, "exe:a", 1), processOf(2, "exe:a", 1, 9), processOf(1, "exe:a", 1, 8)}), 1);
    EXPECT_EQ(mainOf({processOf(3, "exe:a", 1, 8), processOf(2, "exe:a", 1, 8)}), 3);
    EXPECT_EQ(mainOf({processOf(3, "exe:a", 1), processOf(2, "exe:a", 1)}), 3);
}

TEST_F(AggregatedApplications, showTheSystemOnce) {
    const auto apps = sum({processOf(1, "system", 5), processOf(2, "/System/Applications/Clock.app", 4),
                           processOf(3, "system", 1), processOf(4, "exe:system", 0)});
    ASSERT_EQ(apps.size(), 3U);
    EXPECT_EQ(apps[0].name, "macOS System");
    EXPECT_TRUE(apps[0].isSystem && !apps[0].bundlePath && !apps[0].bundleID);
    EXPECT_EQ(apps[0].pids, (std::vector<std::int32_t>{1, 3}));
    EXPECT_TRUE(apps[1].isSystem);
    EXPECT_FALSE(apps[2].isSystem);
}

} // namespace
} // namespace ostrivane
