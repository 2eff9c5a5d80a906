#include "app/widgets/ChartAxis.hpp"
#include "app/widgets/ChartGrid.hpp"
#include "tests/TimeZone.hpp"

#include <QStringList>

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

using Kind = ChartAxis::Kind;

const auto number = [](double value) { return QString::number(value); };

QStringList labelsOf(const std::vector<GridTime>& times) {
    QStringList labels;
    for (const GridTime& time : times)
        labels << time.label;
    return labels;
}

TEST(ChartAxisTest, OpenAxesEndAtRoundFigures) {
    for (const auto& [value, end] : {std::pair{0.0, 1.0},
                                     {0.3, 1.0},
                                     {1.0, 1.0},
                                     {1.2, 2.0},
                                     {2.0, 2.0},
                                     {4.9, 5.0},
                                     {5.1, 10.0},
                                     {99.0, 100.0},
                                     {1000.0, 1000.0},
                                     {12e6, 20e6},
                                     {-3.0, 1.0}})
        EXPECT_DOUBLE_EQ(AxisScale::nice(value, false), end) << value;
    constexpr double gigabyte = 1024.0 * 1024 * 1024;
    for (const auto& [value, end] : {std::pair{0.0, 1.0},
                                     {3.86 * gigabyte, 5 * gigabyte},
                                     {300 * gigabyte, 512 * gigabyte},
                                     {600 * gigabyte, 1024 * gigabyte},
                                     {1000.0, 1024.0}})
        EXPECT_DOUBLE_EQ(AxisScale::nice(value, true), end) << value;
    EXPECT_DOUBLE_EQ(AxisScale::nice(0.1 + 0.2 + 1.7, false), 2) << "sums of fractions stay at their step";
}

TEST(ChartAxisTest, EachKindHasItsEnds) {
    EXPECT_DOUBLE_EQ(AxisScale::fit({.kind = Kind::percent}, 7), 1);
    EXPECT_DOUBLE_EQ(AxisScale::fit({.kind = Kind::fixed, .most = 32}, 50), 32);
    EXPECT_DOUBLE_EQ(AxisScale::fit({.kind = Kind::cores}, 0.2), 1);
    EXPECT_DOUBLE_EQ(AxisScale::fit({.kind = Kind::cores}, 2), 2);
    EXPECT_DOUBLE_EQ(AxisScale::fit({.kind = Kind::cores}, 2.01), 3);
    EXPECT_DOUBLE_EQ(AxisScale::fit({.kind = Kind::temperature}, 64), 100);
    EXPECT_DOUBLE_EQ(AxisScale::fit({.kind = Kind::temperature}, 104), 110);
    EXPECT_DOUBLE_EQ(lowerEnd({.kind = Kind::temperature}), 30);
    EXPECT_DOUBLE_EQ(lowerEnd({.kind = Kind::open}), 0);
}

TEST(ChartAxisTest, GrowsAtOnceAndShrinksAfterThirtySeconds) {
    const ChartAxis axis{.kind = Kind::open};
    AxisScale scale;
    EXPECT_DOUBLE_EQ(scale.top(axis, 3, 0), 5);
    EXPECT_DOUBLE_EQ(scale.top(axis, 80, 1), 100);
    EXPECT_DOUBLE_EQ(scale.top(axis, 41, 100), 100) << "not below 40%";
    EXPECT_DOUBLE_EQ(scale.top(axis, 10, 101), 100);
    EXPECT_DOUBLE_EQ(scale.top(axis, 45, 120), 100) << "this starts the wait anew";
    EXPECT_DOUBLE_EQ(scale.top(axis, 10, 121), 100);
    EXPECT_DOUBLE_EQ(scale.top(axis, 10, 150.9), 100);
    EXPECT_DOUBLE_EQ(scale.top(axis, 10, 151), 10);
    EXPECT_DOUBLE_EQ(scale.top(axis, 1, 152), 10);
    EXPECT_DOUBLE_EQ(scale.top(axis, 1, 20), 10) << "the clock was set back";
    EXPECT_DOUBLE_EQ(scale.top(axis, 1, 49), 10);
    EXPECT_DOUBLE_EQ(scale.top(axis, 1, 50), 1);
}

TEST(ChartAxisTest, LabelsStandWhereThereIsRoom) {
    const ChartAxis axis{.kind = Kind::temperature, .label = number};
    const auto all = axisHeights(axis, 100, GridDetail::all);
    ASSERT_EQ(all.size(), 5u);
    EXPECT_EQ(all[0], (GridHeight{0, QStringLiteral("30"), true}));
    EXPECT_EQ(all[1], (GridHeight{0.25, {}, false}));
    EXPECT_EQ(all[2], (GridHeight{0.5, QStringLiteral("65"), false}));
    EXPECT_EQ(all[4], (GridHeight{1, QStringLiteral("100"), false}));
    const auto middle = axisHeights(axis, 100, GridDetail::middle);
    ASSERT_EQ(middle.size(), 3u);
    EXPECT_TRUE(middle[0].label.isEmpty());
    EXPECT_EQ(middle[1].label, QStringLiteral("65"));
    EXPECT_TRUE(axisHeights({.kind = Kind::percent}, 1, GridDetail::all)[4].label.isEmpty()) << "without words";
}

TEST(ChartAxisTest, MirroredHalvesShareOneScale) {
    const ChartAxis axis{.kind = Kind::open, .label = number};
    EXPECT_EQ(mirrorEnds(axis, 100, 50), (MirrorEnds{100, 50}));
    EXPECT_EQ(mirrorEnds(axis, 100, 1), (MirrorEnds{100, 50})) << "a quarter at least, up to a round figure";
    EXPECT_EQ(mirrorEnds(axis, 1, 50), (MirrorEnds{20, 50}));
    const auto heights = mirrorHeights(axis, {100, 50}, GridDetail::all);
    ASSERT_EQ(heights.size(), 4u);
    EXPECT_EQ(heights[0], (GridHeight{0, QStringLiteral("50"), false}));
    EXPECT_EQ(heights[1], (GridHeight{50.0 / 150, QStringLiteral("0"), true}));
    EXPECT_EQ(heights[2], (GridHeight{100.0 / 150, QStringLiteral("50"), false}));
    EXPECT_EQ(heights[3], (GridHeight{1, QStringLiteral("100"), false}));
}

TEST(ChartAxisTest, SpansAreToldFromTheNewest) {
    const auto told = [](double span, const char* ending, int most) {
        return labelsOf(spanTimes(span, QString::fromLatin1(ending), most)).join(QLatin1Char('|'));
    };
    EXPECT_EQ(told(300, "", 6), QStringLiteral("5 min|4|3|2|1|now"));
    EXPECT_EQ(told(60, "", 6), QStringLiteral("60 s|50|40|30|20|10|now"));
    EXPECT_EQ(told(3600, " ago", 4), QStringLiteral("60 min ago|45|30|15|now"));
    EXPECT_EQ(told(43200, " ago", 5), QStringLiteral("12 h ago|9|6|3|now"));
    EXPECT_EQ(told(7 * 86400, " ago", 4), QStringLiteral("7 d ago|6|4|2|now"));
    EXPECT_EQ(told(30 * 86400, " ago", 5), QStringLiteral("30 d ago|24|18|12|6|now"));
    EXPECT_TRUE(spanTimes(0, {}, 5).empty());
    const auto times = spanTimes(300, {}, 6);
    EXPECT_DOUBLE_EQ(times[1].share, 0.2);
}

TEST(ChartAxisTest, LongSpansAreToldByTheClockAndTheCalendar) {
    const TimeZone zone("Europe/Berlin");
    constexpr double now = 1763731920; // 14:32 on 21 November 2025
    EXPECT_EQ(labelsOf(clockTimes(now - 86400, now, 6)).join(QLatin1Char('|')),
              QStringLiteral("14:32|18:32|22:32|02:32|06:32|10:32|now"));
    EXPECT_EQ(labelsOf(clockTimes(now - 86400 + 1e-6, now, 6)).size(), 7) << "fractions do not matter";
    EXPECT_EQ(labelsOf(clockTimes(now - 3600, now, 6)).first(), QStringLiteral("13:32"));
    const auto week = clockTimes(now - 7 * 86400, now, 7);
    EXPECT_EQ(labelsOf(week).join(QLatin1Char('|')),
              QStringLiteral("15 Nov|16 Nov|17 Nov|18 Nov|19 Nov|20 Nov|21 Nov|now"));
    EXPECT_NEAR(week[0].share, (9 * 3600 + 28 * 60) / (7 * 86400.0), 1e-9) << "at midnight";
    // Over the change from summer time midnights are no longer a whole number of days apart.
    constexpr double later = 1761570000; // 14:00 on 27 October 2025, the clock was set back on the 26th
    const auto change = clockTimes(later - 3 * 86400, later, 7);
    ASSERT_EQ(labelsOf(change).join(QLatin1Char('|')), QStringLiteral("25 Oct|26 Oct|27 Oct|now"));
    EXPECT_NEAR((change[2].share - change[1].share) * 72, 25, 1e-6);
}

} // namespace
} // namespace ostrivane
