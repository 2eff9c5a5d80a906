#include "app/widgets/ChartShape.hpp"
#include "app/widgets/ChartReadout.hpp"
#include "app/widgets/ChartText.hpp"

#include <array>

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

using namespace ChartShape;
using Piece = ChartShape::Run; // a test has a `Run` of its own

std::vector<std::size_t> lengths(const std::vector<Piece>& runs) {
    std::vector<std::size_t> sizes;
    for (const Run& run : runs)
        sizes.push_back(run.size());
    return sizes;
}

const std::function<QString(double)> whole = [](double value) { return QString::number(value); };

TEST(ChartShapeTest, LiveLinesBreakWhereTheMachineSlept) {
    EXPECT_TRUE(liveRuns({}).empty());
    EXPECT_EQ(lengths(liveRuns(Piece{{5, 1}})), std::vector<std::size_t>{1});
    EXPECT_EQ(lengths(liveRuns(Piece{{0, 1}, {2, 1}, {4, 1}, {80, 1}, {82, 1}})), (std::vector<std::size_t>{3, 2}));
    EXPECT_EQ(lengths(liveRuns(Piece{{0, 1}, {2, 1}, {32, 1}, {34, 1}})), std::vector<std::size_t>{4})
        << "a choice of interval is no gap";
    EXPECT_EQ(lengths(liveRuns(Piece{{0, 1}, {60, 1}, {120, 1}, {240, 1}, {300, 1}})), std::vector<std::size_t>{5});
    EXPECT_EQ(lengths(liveRuns(Piece{{0, 1}, {60, 1}, {120, 1}, {280, 1}, {340, 1}})),
              (std::vector<std::size_t>{3, 2}));
}

TEST(ChartShapeTest, LinesOfThePastBreakByTheLongerLength) {
    const std::vector<HistoryPoint> points{{0, 60, 1}, {60, 60, 2}, {210, 60, 3}, {361, 60, 4}, {1000, 600, 5}};
    const auto runs = historyRuns(points);
    ASSERT_EQ(lengths(runs), (std::vector<std::size_t>{5, 4})) << "150 s is no gap, 151 s is, 639 s is none beside 600";
    EXPECT_EQ(runs[0].front(), (TimedValue{0, 1})) << "from the beginning of the first stretch";
    EXPECT_EQ(runs[0][1], (TimedValue{30, 1}));
    EXPECT_EQ(runs[0].back(), (TimedValue{270, 3})) << "to the end of the last";
    const std::vector<HistoryPoint> peaks{{0, 60, 1, 4.0}, {60, 60, 2}, {120, 60, 3, 6.0}};
    const auto peaked = peakRuns(peaks);
    ASSERT_EQ(peaked.size(), 2u);
    EXPECT_EQ(peaked[1].front().value, 6);
    EXPECT_TRUE(historyRuns({}).empty());
}

TEST(ChartShapeTest, AColumnKeepsItsExtremesInOrder) {
    Piece run;
    for (int at = 0; at < 5000; ++at)
        run.push_back({at / 50.0, at == 1234 ? 9.0 : at == 1210 ? -9.0 : 0.001 * (at % 50)});
    const Piece thin = thinned(run, 0, 100, 1);
    EXPECT_LE(thin.size(), 202u);
    const auto greatest = std::ranges::max_element(thin, {}, &TimedValue::value);
    const auto least = std::ranges::min_element(thin, {}, &TimedValue::value);
    EXPECT_EQ(*greatest, (TimedValue{1234 / 50.0, 9}));
    EXPECT_EQ(*least, (TimedValue{1210 / 50.0, -9}));
    EXPECT_TRUE(std::ranges::is_sorted(thin, {}, &TimedValue::time));

    const Piece sparse{{-9, 1}, {-5, 1}, {1, 1}, {1.5, 2}, {9, 3}, {11, 4}, {20, 5}};
    const Piece seen = thinned(sparse, 0, 10, 1);
    EXPECT_EQ(seen, (Piece{{-5, 1}, {1, 1}, {1.5, 2}, {9, 3}, {11, 4}})) << "with the nearest point at each side";
    EXPECT_TRUE(thinned({}, 0, 10, 1).empty());
}

TEST(ChartShapeTest, StackedLinesAreSumsAtTheSameTimes) {
    const std::vector<Piece> lines{{{0, 1}, {1, 2}, {2, 3}}, {}, {{1, 10}, {2, 20}, {3, 30}}};
    const auto sums = stacked(lines);
    EXPECT_EQ(sums[0], (Piece{{1, 2}, {2, 3}}));
    EXPECT_TRUE(sums[1].empty());
    EXPECT_EQ(sums[2], (Piece{{1, 12}, {2, 23}}));
    EXPECT_TRUE(stacked(std::vector<Piece>{{}, {}})[1].empty());
}

TEST(ChartShapeTest, TheNearestSampleIsReadOut) {
    const std::vector<double> times = timesWithin(1, 9, {4, 0.5, 1, 9, 4, 10});
    EXPECT_EQ(times, (std::vector<double>{1, 4, 9}));
    EXPECT_EQ(nearest(times, -7), 1);
    EXPECT_EQ(nearest(times, 6.4), 4);
    EXPECT_EQ(nearest(times, 6.6), 9);
    EXPECT_EQ(nearest(times, 99), 9);
    EXPECT_EQ(stepped(times, 4, 1), 9);
    EXPECT_EQ(stepped(times, 9, 1), 9);
    EXPECT_EQ(stepped(times, 1, -1), 1);
    EXPECT_FALSE(nearest({}, 1));
    EXPECT_FALSE(stepped({}, 1, 1));
}

TEST(ChartShapeTest, AStretchHoldsItsTimesUpToItsEnd) {
    const std::vector<HistoryPoint> points{{0, 60, 1}, {60, 60, 2}, {600, 60, 3}};
    const auto valueAt = [&](double time) {
        const HistoryPoint* point = pointAt(points, time);
        return point ? std::optional(point->value) : std::nullopt;
    };
    EXPECT_EQ(valueAt(0), 1);
    EXPECT_EQ(valueAt(59.9), 1);
    EXPECT_EQ(valueAt(60), 2);
    EXPECT_FALSE(valueAt(120)) << "there the gap begins";
    EXPECT_EQ(valueAt(659), 3);
    EXPECT_FALSE(valueAt(660));
    EXPECT_FALSE(valueAt(-1));
}

TEST(ChartShapeTest, TheBoxStandsOnTheSideWithRoom) {
    const QRectF bounds(0, 0, 400, 200);
    const QSizeF size(120, 60);
    EXPECT_GT(ChartReadout::place(size, bounds, 100).left(), 100);
    EXPECT_LT(ChartReadout::place(size, bounds, 300).right(), 300);
    EXPECT_TRUE(bounds.contains(ChartReadout::place(size, bounds, 300)));
    EXPECT_TRUE(QRectF(0, 0, 150, 64).contains(ChartReadout::place(size, QRectF(0, 0, 150, 64), 75)));
    EXPECT_EQ(ChartReadout::place(size, QRectF(0, 0, 60, 20), 30).topLeft(), QPointF(0, 0)) << "larger than its place";
}

TEST(ChartTextTest, SentencesTellNowLowestAndHighest) {
    const std::vector<TimedValue> points{{0, 99}, {10, 12}, {20, 58}, {30, 31}, {40, 77}};
    const auto seen = ChartText::figures(points, 5, 35);
    const std::vector<ChartText::Told> one{{QStringLiteral("Busy"), seen, whole}};
    EXPECT_EQ(ChartText::sentence(QStringLiteral("CPU"), ChartText::span(300), one),
              QStringLiteral("CPU, last 5 minutes: now 31, lowest 12, highest 58."));
    const std::vector<ChartText::Told> two{{QStringLiteral("%1 in"), seen, whole}, {QStringLiteral("out"), {}, whole}};
    EXPECT_EQ(ChartText::sentence(QStringLiteral("N"), ChartText::span(86400), two),
              QStringLiteral("N, last 24 hours: %1 in now 31, lowest 12, highest 58."));
    EXPECT_EQ(ChartText::sentence(QStringLiteral("N"), ChartText::span(60), two, ChartText::Figures{9, 8, 10}),
              QStringLiteral("N, last minute: now 9, lowest 8, highest 10; %1 in now 31, lowest 12, highest 58."));
    EXPECT_EQ(ChartText::sentence(QStringLiteral("N"), ChartText::span(60), {}),
              QStringLiteral("N, last minute: no data."));
    EXPECT_FALSE(ChartText::figures(points, 100, 200));
}

TEST(ChartTextTest, SpansAreNamedInTheirUnit) {
    EXPECT_EQ(ChartText::span(45), QStringLiteral("last 45 seconds"));
    EXPECT_EQ(ChartText::span(3600), QStringLiteral("last hour"));
    EXPECT_EQ(ChartText::span(43200), QStringLiteral("last 12 hours"));
    EXPECT_EQ(ChartText::span(30 * 86400), QStringLiteral("last 30 days"));
}

} // namespace
} // namespace ostrivane
