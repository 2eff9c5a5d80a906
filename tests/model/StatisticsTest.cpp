#include "core/model/Statistics.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace ostrivane {

TEST(Statistics, givesTheDeviationOfASample) {
    EXPECT_FALSE(Statistics::meanAndStdDev({}));
    EXPECT_FALSE(Statistics::meanAndStdDev(std::vector{4.0}));
    const auto same = Statistics::meanAndStdDev(std::vector{4.0, 4.0}).value();
    EXPECT_EQ(same.mean, 4);
    EXPECT_EQ(same.sd, 0);
    const auto spread = Statistics::meanAndStdDev(std::vector{2.0, 4.0, 4.0, 4.0, 5.0, 5.0, 7.0, 9.0}).value();
    EXPECT_EQ(spread.mean, 5);
    EXPECT_DOUBLE_EQ(spread.sd, std::sqrt(32.0 / 7)); // 2 would be the population's
}

TEST(Statistics, fitsALineFromItsFirstPoint) {
    // Wall clock seconds: squares of such times leave no room for the differences.
    std::vector<TimedValue> points;
    for (const double x : {0.0, 10.0, 20.0, 40.0})
        points.push_back({1'700'000'000 + x, 50 - 0.25 * x});
    const auto line = Statistics::linearFit(points).value();
    EXPECT_NEAR(line.slope, -0.25, 1e-12);
    EXPECT_NEAR(line.intercept, 50, 1e-9);
    EXPECT_NEAR(line.r2, 1, 1e-12);
    EXPECT_LE(line.r2, 1);

    const auto cloud = Statistics::linearFit(std::vector<TimedValue>{{0, 1}, {1, 3}, {2, 2}}).value();
    EXPECT_DOUBLE_EQ(cloud.slope, 0.5);
    EXPECT_DOUBLE_EQ(cloud.intercept, 1.5);
    EXPECT_DOUBLE_EQ(cloud.r2, 0.25);
}

TEST(Statistics, fitsNoLineThroughTooLittle) {
    EXPECT_FALSE(Statistics::linearFit({}));
    EXPECT_FALSE(Statistics::linearFit(std::vector<TimedValue>{{0, 1}, {1, 2}}));
    EXPECT_FALSE(Statistics::linearFit(std::vector<TimedValue>{{5, 1}, {5, 2}, {5, 3}}));
    const auto flat = Statistics::linearFit(std::vector<TimedValue>{{0, 7}, {1, 7}, {2, 7}}).value();
    EXPECT_EQ(flat.slope, 0);
    EXPECT_EQ(flat.intercept, 7);
    EXPECT_EQ(flat.r2, 0);
}

} // namespace ostrivane
