#include "core/sampling/platform/NVML.hpp"

#include "tests/sampling/platform/FakeNVML.hpp"

#include <gtest/gtest.h>

#include <set>
#include <string_view>

using namespace ostrivane;

namespace {

constexpr std::uint64_t second = 1'000'000; // of the library's clock
constexpr std::uint64_t start = 1'700'000'000 * second;

NVMLLibrary::ProcessSample sample(unsigned pid, double at, unsigned percent) {
    return {.pid = pid, .atMicros = start + static_cast<std::uint64_t>(at * 1e6), .compute = percent};
}

struct NVMLTest : testing::Test {
    /// The nanoseconds of a process after the library has these samples, at `now`.
    std::uint64_t after(double now, std::vector<NVMLLibrary::ProcessSample> samples, std::int32_t pid = 5) {
        fake.chips[0].samples = std::move(samples);
        nvml.open();
        nvml.sampleProcesses(now);
        return nvml.processTimes().contains(pid) ? nvml.processTimes().at(pid) : 99;
    }

    FakeNVML fake;
    NVML nvml{FakeNVML::library()};
};

} // namespace

TEST_F(NVMLTest, tellsTheFiguresOfEachChipThatAnswers) {
    fake.chips = {{.name = "One", .percent = 55, .memoryUsed = 4096},
                  {.name = "Lost", .result = 15},
                  {.name = "Mad", .percent = 101}};
    ASSERT_TRUE(nvml.open());
    const auto found = nvml.accelerators();
    ASSERT_EQ(found.size(), 3u);
    EXPECT_EQ(found[0].name, "One");
    EXPECT_EQ(found[0].statistics->devicePercent, 55.0);
    EXPECT_EQ(found[0].statistics->memoryInUse, 4096u);
    EXPECT_EQ(found[1], (AcceleratorReading{.name = std::nullopt, .statistics = AcceleratorStatistics{}}));
    EXPECT_FALSE(found[2].statistics->devicePercent) << "more than all of it";
    fake.chips = {{.name = std::string(200, 'x')}};
    EXPECT_EQ(nvml.accelerators().at(0).name, std::string(96, 'x'));
}

TEST_F(NVMLTest, turnsPercentOfTheTimeIntoNanoseconds) {
    EXPECT_EQ(after(100, {sample(5, 1, 80)}), 0u) << "since when is not known";
    EXPECT_EQ(after(102, {sample(5, 1, 80), sample(5, 3, 50), sample(6, 3, 10)}), 1'000'000'000u);
    EXPECT_EQ(nvml.processTimes().at(6), 0u);
    EXPECT_EQ(after(104, {sample(5, 3, 50)}), 1'000'000'000u) << "nobody busy";
    EXPECT_EQ(after(106, {sample(5, 7, 900)}), 1'000'000'000u) << "nonsense";
    EXPECT_EQ(after(107, {sample(5, 8, 100), sample(0, 8, 50), sample(4000000000, 8, 50)}), 2'000'000'000u);
    EXPECT_EQ(nvml.processTimes().size(), 2u);
}

// A process that did nothing for an hour was not busy for half of it because it is at 50% now.
TEST_F(NVMLTest, countsNoPauseAsWork) {
    after(100, {sample(5, 1, 80)});
    after(3698, {});
    EXPECT_EQ(after(3700, {sample(5, 3601, 50)}), 1'000'000'000u);
    nvml.skipProcesses(7000);
    EXPECT_EQ(after(7001, {sample(5, 6902, 50)}), 1'500'000'000u) << "it was not looked at";
}

TEST_F(NVMLTest, makesUpForASampleThatDidNotFit) {
    after(100, {sample(5, 1, 80)});
    fake.growsBetweenCalls = true;
    EXPECT_EQ(after(101, {sample(5, 2, 80)}), 0u);
    fake.growsBetweenCalls = false;
    EXPECT_EQ(after(102, {sample(5, 2, 80)}), 800'000'000u);
    EXPECT_EQ(after(103, {sample(5, 2, 80)}), 800'000'000u) << "counted once";
}

TEST_F(NVMLTest, forgetsWhoHasEnded) {
    after(100, {sample(5, 1, 80), sample(6, 1, 80)});
    nvml.forgetProcesses([](std::int32_t pid) { return pid == 6; });
    EXPECT_EQ(nvml.processTimes(), (PidMap<std::uint64_t>{{6, 0}}));
    EXPECT_EQ(after(110, {sample(5, 11, 80)}), 0u) << "another process of that number";
}

TEST_F(NVMLTest, isClosedAsOftenAsOpened) {
    EXPECT_TRUE(nvml.open() && nvml.open());
    EXPECT_EQ(fake.initialised, 1);
    nvml.close();
    nvml.close();
    EXPECT_EQ(fake.shutDown, 1);
    EXPECT_TRUE(nvml.accelerators().empty());
    { NVML(FakeNVML::library()).open(); }
    EXPECT_EQ(fake.initialised, fake.shutDown);
    fake.initResult = 9; // the driver is not loaded
    EXPECT_FALSE(nvml.open());
    fake.initResult = 0;
    EXPECT_TRUE(nvml.open()) << "now it is";
}

TEST_F(NVMLTest, isUselessForGoodAfterAnUpdateInPlace) {
    ASSERT_TRUE(nvml.open());
    fake.chips[0].result = 18; // library and driver differ in version
    EXPECT_EQ(nvml.accelerators().at(0).statistics, AcceleratorStatistics{});
    EXPECT_FALSE(nvml.open());
    EXPECT_FALSE(fake.isOpen());
    fake.chips[0].result = 0;
    EXPECT_FALSE(nvml.open());
    EXPECT_EQ(fake.initialised, 1) << "not tried again";
}

TEST_F(NVMLTest, standsWithoutFunctionsThatItCanDoWithout) {
    std::set<std::string_view> missing;
    const auto find = [&missing] {
        return NVMLLibrary::find([&missing](const char* name) -> void* {
            return missing.contains(name) ? nullptr : reinterpret_cast<void*>(FakeNVML::library().init);
        });
    };
    missing = {"nvmlDeviceGetName", "nvmlDeviceGetUtilizationRates", "nvmlDeviceGetMemoryInfo",
               "nvmlDeviceGetProcessUtilization"};
    ASSERT_TRUE(find());
    EXPECT_FALSE(find()->name || find()->utilization || find()->memory || find()->processSamples);
    for (const char* needed :
         {"nvmlInit_v2", "nvmlShutdown", "nvmlDeviceGetCount_v2", "nvmlDeviceGetHandleByIndex_v2"}) {
        missing = {needed};
        EXPECT_FALSE(find()) << needed;
    }
    NVMLLibrary bare = FakeNVML::library();
    bare.name = nullptr;
    bare.utilization = nullptr;
    bare.memory = nullptr;
    bare.processSamples = nullptr;
    NVML asked(bare);
    ASSERT_TRUE(asked.open());
    EXPECT_EQ(asked.accelerators(),
              (std::vector<AcceleratorReading>{{.name = std::nullopt, .statistics = AcceleratorStatistics{}}}));
    asked.sampleProcesses(1);
    EXPECT_TRUE(asked.processTimes().empty());
}
