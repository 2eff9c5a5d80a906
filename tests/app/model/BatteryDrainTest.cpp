#include "app/model/BatteryDrain.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace ostrivane {
namespace {

using Points = std::vector<TimedValue>;

TEST(BatteryDrain, needsFourMinutesOfAFallingCharge) {
    EXPECT_EQ(BatteryDrain::current(Points{}), std::nullopt);
    EXPECT_EQ(BatteryDrain::current(Points{{0, 80}, {240, 79}}), std::nullopt) << "not longer than four minutes";
    EXPECT_EQ(BatteryDrain::current(Points{{0, 80}, {300, 80}}), std::nullopt);
    EXPECT_EQ(BatteryDrain::current(Points{{0, 80}, {300, 81}}), std::nullopt);
    EXPECT_EQ(BatteryDrain::current(Points{{0, 80}, {150, 90}, {300, 79}}), 12.0);
}

/// Rows of the given percentages, a quarter of an hour apart.
std::vector<SystemRow> quarters(const std::vector<std::optional<double>>& percents) {
    std::vector<SystemRow> rows;
    for (const auto& percent : percents)
        rows.push_back({.bucket = 900 * static_cast<std::int64_t>(rows.size()), .res = 900, .batteryPct = percent});
    return rows;
}

TEST(BatteryDrain, countsOnlyTimeOnBatteryOfTheWeek) {
    EXPECT_EQ(BatteryDrain::typical(std::vector<SystemRow>{}), std::nullopt);
    EXPECT_EQ(BatteryDrain::typical(quarters({90, 88, 86, 84, 82})), std::nullopt) << "an hour and no more";
    EXPECT_EQ(BatteryDrain::typical(quarters({90, 88, 86, 84, 82, 80})), 8.0);
    EXPECT_EQ(BatteryDrain::typical(quarters({90, 88, 95, 95, 86, std::nullopt, 84, 82, 80, 78})), 13.6)
        << "charging, a standstill and what is not known count for nothing";
    auto rows = quarters({90, 88, 86, 84, 82, 80, 10});
    rows.back().bucket += 1;
    EXPECT_EQ(BatteryDrain::typical(rows), 8.0) << "too far apart";
}

} // namespace
} // namespace ostrivane
