#include "core/sampling/GPUCollector.hpp"

#include "core/sampling/platform/UserClientCreator.hpp"

#include <gtest/gtest.h>

using namespace ostrivane;

namespace {

AcceleratorReading chip(std::optional<std::string> name, std::optional<double> percent) {
    AcceleratorStatistics statistics;
    statistics.devicePercent = percent;
    return {.name = std::move(name), .statistics = statistics};
}

GPUSnapshot read(const std::vector<AcceleratorReading>& accelerators) {
    return GPUCollector::read(accelerators, "Processor");
}

} // namespace

TEST(GPUCollector, reportsTheBusiestChipAndTheFirstOfEquals) {
    EXPECT_EQ(read({chip("a", 10), chip("b", 40)}).name, "b");
    EXPECT_EQ(read({chip("a", 40), chip("b", 40)}).name, "a");
    EXPECT_EQ(read({chip("a", 40), chip("b", 10)}).utilization, 0.4);
    EXPECT_EQ(read({chip("a", std::nullopt), chip("b", 0)}).name, "b") << "0 is a figure";
    EXPECT_EQ(read({chip("a", 0), chip("b", std::nullopt)}).name, "a");
    EXPECT_EQ(read({{.name = "display", .statistics = std::nullopt}, chip("b", std::nullopt)}).name, "b");
}

TEST(GPUCollector, turnsPercentIntoFractionsAndKeepsWhatIsAbsent) {
    const AcceleratorStatistics all{
        .devicePercent = 23, .rendererPercent = 121, .tilerPercent = 0, .memoryInUse = 7, .memoryAllocated = 9};
    const GPUSnapshot want{.name = "Chip",
                           .utilization = 0.23,
                           .rendererUtilization = 1.21, // as the driver says, not clamped
                           .tilerUtilization = 0.0,
                           .memoryInUse = 7,
                           .memoryAllocated = 9,
                           .perAppAvailable = false};
    EXPECT_EQ(read({{.name = "Chip", .statistics = all}}), want);
    GPUSnapshot nothing;
    nothing.name = "Chip";
    EXPECT_EQ(read({chip("Chip", std::nullopt)}), nothing);
}

TEST(GPUCollector, namesWhatHasNoNameAfterTheProcessor) {
    GPUSnapshot none;
    none.name = "Processor";
    EXPECT_EQ(read({}), none);
    EXPECT_EQ(read({AcceleratorReading{}}), none) << "a chip without figures";
    EXPECT_EQ(read({chip(std::nullopt, 5)}).name, "Processor");
    EXPECT_EQ(read({chip("Other", 1), chip(std::nullopt, 5)}).name, "GPU") << "neither the processor's nor the other's";
}

TEST(UserClientCreator, findsTheProcess) {
    struct {
        const char* text;
        std::optional<std::int32_t> want;
    } cases[] = {
        {"pid 812, Google Chrome He", 812}, {"pid 7, a, pid 9", 7},       {"pid 41", std::nullopt},
        {"no number here", std::nullopt},   {"", std::nullopt},           {", pid 5", std::nullopt},
        {"pid , x", std::nullopt},          {"pid 12x, y", std::nullopt}, {"pid 99999999999, y", std::nullopt},
        {"pid -4, y", std::nullopt},
    };
    for (const auto& c : cases)
        EXPECT_EQ(UserClientCreator::pid(c.text), c.want) << c.text;
}
