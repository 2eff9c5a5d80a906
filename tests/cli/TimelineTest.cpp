#include "cli/Timeline.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace ostrivane::cli {
namespace {

using Parts = std::vector<std::optional<double>>;
constexpr Period period{Date{1000}, Date{1400}};

Piece piece(double start, double length, double value) {
    return {.start = start, .length = length, .value = value, .highest = value * 2};
}

TEST(Timeline, leavesGapsAndWeighsPiecesByTheTimeTheyCover) {
    EXPECT_EQ(means({piece(1000, 100, 1), piece(1300, 60, 3)}, period, 4), (Parts{1, std::nullopt, std::nullopt, 3}));
    EXPECT_EQ(means({piece(1000, 30, 8), piece(1030, 10, 4)}, period, 4)[0], 7) << "30 s of 8 and 10 s of 4";
    EXPECT_EQ(means({piece(950, 300, 5)}, period, 4), (Parts{5, 5, 5, std::nullopt})) << "a coarse row fills its parts";
    EXPECT_EQ(means({piece(500, 500, 5), piece(1400, 60, 5)}, period, 2), (Parts{std::nullopt, std::nullopt}));
    EXPECT_EQ(means({piece(1000, 400, 1)}, period, 0), Parts());
}

TEST(Timeline, findsMeanLowestAndHighestOfMixedResolutions) {
    const auto found = extremes({piece(1000, 300, 1), piece(1300, 60, 7), piece(2000, 60, 99)}, period);
    ASSERT_TRUE(found);
    EXPECT_DOUBLE_EQ(found->mean, 2) << "300 s of 1 and 60 s of 7";
    EXPECT_EQ(found->lowest, 1);
    EXPECT_EQ(found->highest, 14) << "the peak within a piece";
    EXPECT_FALSE(extremes({piece(1400, 60, 1)}, period));
    EXPECT_EQ(coverage({piece(900, 150, 1), piece(1000, 100, 1), piece(1390, 60, 1)}, period), 110)
        << "time that two pieces cover counts once";
}

TEST(Timeline, passesOverWhatADamagedFileHolds) {
    const double infinite = std::numeric_limits<double>::infinity();
    const double absurd = static_cast<double>(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(means({piece(1000, 0, 1), piece(1000, -60, 1), piece(1000, 60, infinite), piece(1100, 60, 2)}, period, 2),
              (Parts{2, std::nullopt}));
    EXPECT_EQ(means({piece(-absurd, absurd, 1), piece(1300, absurd, 2)}, period, 2), (Parts{std::nullopt, 2}));
    EXPECT_EQ(coverage({piece(1300, absurd, 2)}, period), 100);
}

} // namespace
} // namespace ostrivane::cli
