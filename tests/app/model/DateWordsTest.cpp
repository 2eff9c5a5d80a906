#include "app/model/DateWords.hpp"

#include "tests/TimeZone.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace ostrivane {
namespace {

TEST(DateWordsTest, namesDaysAsAPersonDoes) {
    const TimeZone berlin("CET-1CEST,M3.5.0,M10.5.0/3");
    const Date now{1792965600}; // 2026-10-25 23:00, a day of 25 hours
    const auto ago = [&](double hours) { return now + -hours * 3600; };
    EXPECT_EQ(DateWords::moment(now, now), "Today, 23:00");
    EXPECT_EQ(DateWords::moment(ago(23.9), now), "Today, 00:06");
    EXPECT_EQ(DateWords::nearDay(ago(24.1), now), "Yesterday");
    EXPECT_EQ(DateWords::nearDay(ago(47.9), now), "Yesterday");
    EXPECT_EQ(DateWords::nearDay(ago(49), now), "23 October");
    EXPECT_EQ(DateWords::nearDay(ago(-5), now), "26 October") << "ahead of the clock";
    EXPECT_EQ(DateWords::day(ago(360 * 24), now), "30 October 2025");
    EXPECT_EQ(DateWords::span(ago(3), ago(1), now), "Today, 20:00 to 22:00");
    EXPECT_EQ(DateWords::span(ago(30), ago(1), now), "Yesterday, 18:00 to Today, 22:00");
    const Date after = now + 2 * 3600; // in the first hours of the next day
    EXPECT_EQ(DateWords::nearDay(ago(23.9), after), "Yesterday") << "that long day from its first minutes on";
    EXPECT_EQ(DateWords::nearDay(ago(24.1), after), "24 October");
}

TEST(DateWordsTest, hasADashForWhatNoCalendarReaches) {
    const Date now{1792965600};
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double odd : {infinity, -infinity, std::numeric_limits<double>::quiet_NaN(), 1e300}) {
        EXPECT_EQ(DateWords::clock(Date{odd}), "—");
        EXPECT_EQ(DateWords::nearDay(Date{odd}, now), "—");
    }
}

} // namespace
} // namespace ostrivane
