#include "core/model/RollingSeries.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <utility>

namespace ostrivane {

namespace {

using Points = std::vector<TimedValue>;

/// The same series without any running figure: each point keeps the samples it stands for.
struct Bucket {
    double start = 0;
    std::vector<double> samples;

    double mean() const {
        double sum = 0;
        for (const double sample : samples)
            sum += sample;
        return sum / static_cast<double>(samples.size());
    }
};

std::vector<Bucket> without(const std::vector<Bucket>& buckets, double cutoff) {
    if (buckets.empty() || buckets.front().start >= cutoff)
        return buckets;
    std::vector<Bucket> kept;
    for (const Bucket& bucket : buckets)
        if (bucket.start >= cutoff)
            kept.push_back(bucket);
    return kept;
}

Points pointsOf(const RollingSeries& series) {
    return {series.points().begin(), series.points().end()};
}

void expectSameFigures(const RollingSeries& series, const std::vector<Bucket>& buckets, double seconds, double now) {
    Points window;
    double sum = 0;
    for (const Bucket& bucket : buckets)
        if (now - seconds <= bucket.start) {
            window.push_back({bucket.start, bucket.mean()});
            sum += bucket.mean();
        }
    const Points found = series.window(seconds, now);
    ASSERT_EQ(found.size(), window.size());
    for (std::size_t index = 0; index < window.size(); ++index) {
        ASSERT_EQ(found[index].time, window[index].time);
        ASSERT_NEAR(found[index].value, window[index].value, 1e-9);
    }
    for (const TimedValue& point : series.points())
        ASSERT_LE(point.value, series.ceiling());
    ASSERT_EQ(series.mean(seconds, now).has_value(), !window.empty());
    if (!window.empty()) {
        ASSERT_NEAR(*series.mean(seconds, now), sum / static_cast<double>(window.size()), 1e-9);
    }
    ASSERT_EQ(series.coverage(seconds, now), window.empty() ? 0 : window.back().time - window.front().time);
}

} // namespace

TEST(RollingSeries, averagesSamplesOfOneBucket) {
    RollingSeries series(100, 5);
    EXPECT_EQ(series.latest(), std::nullopt);
    series.append(10, 0);
    series.append(20, 1);
    series.append(30, 4);
    EXPECT_EQ(pointsOf(series), (Points{{0, 20}}));
    series.append(40, 5); // exactly one spacing later begins the next
    EXPECT_EQ(pointsOf(series), (Points{{0, 20}, {5, 40}}));
    series.append(50, 6); // the count of the bucket before is not carried over
    EXPECT_EQ(pointsOf(series), (Points{{0, 20}, {5, 45}}));
    EXPECT_EQ(series.latest(), 45);
}

TEST(RollingSeries, storesEverySampleWithoutASpacing) {
    for (const double spacing : {0.0, -1.0}) {
        RollingSeries series(100, spacing);
        series.append(1, 3);
        series.append(2, 3);
        series.append(3, 1);
        EXPECT_EQ(pointsOf(series), (Points{{3, 1}, {3, 2}, {1, 3}}));
    }
}

TEST(RollingSeries, dropsOnlyWhatIsOlderThanItsAge) {
    RollingSeries series(10, 0);
    for (const double time : {0.0, 1.0, 2.0})
        series.append(time, time);
    series.append(11, 11);
    EXPECT_EQ(pointsOf(series), (Points{{1, 1}, {2, 2}, {11, 11}})); // a point at exactly the age stays
    series.append(100, 100);
    EXPECT_EQ(pointsOf(series), (Points{{100, 100}}));
}

TEST(RollingSeries, dropsOldPointsFromBetweenNewerOnes) {
    RollingSeries series(10, 0);
    for (const double time : {5.0, 1.0, 6.0}) // the clock stepped back once
        series.append(time, time);
    series.append(14, 14);
    EXPECT_EQ(series.points().size(), 4U); // the first point holds, so nothing is looked at
    series.append(15.5, 15.5);
    EXPECT_EQ(pointsOf(series), (Points{{6, 6}, {14, 14}, {15.5, 15.5}}));
}

TEST(RollingSeries, looksAtAWindow) {
    RollingSeries series(100, 0);
    EXPECT_EQ(series.mean(10, 0), std::nullopt);
    EXPECT_EQ(series.coverage(10, 0), 0);
    for (const double time : {10.0, 20.0, 30.0, 40.0})
        series.append(time, time);
    EXPECT_EQ(series.window(10, 30), (Points{{20, 20}, {30, 30}, {40, 40}})); // its edge counts, later ones too
    EXPECT_EQ(series.mean(10, 30), 30);
    EXPECT_EQ(series.coverage(10, 30), 20);
    EXPECT_EQ(series.coverage(5, 40), 0); // one point covers no time
    EXPECT_EQ(series.mean(5, 50), std::nullopt);
}

TEST(RollingSeries, keepsItsRoomOnceItSpansItsAge) {
    RollingSeries series(3600, 5);
    double time = 0;
    const auto appendHours = [&](double hours) { // the first and the last place at which the points began
        std::pair places(series.points().data(), series.points().data());
        for (const double end = time + hours * 3600; time < end; time += 2) {
            series.append(1, time);
            places = std::minmax({places.first, places.second, series.points().data()});
        }
        return places;
    };
    appendHours(3);
    const auto places = appendHours(1);
    EXPECT_EQ(appendHours(50), places);
    EXPECT_LE(series.points().size(), 721U);
}

TEST(RollingSeries, lowersItsCeilingOnceWhatWasHighIsOld) {
    RollingSeries series(1000, 10);
    for (double time = 0; time < 1200; time += 10)
        series.append(time == 50 ? 9 : 1, time);
    EXPECT_EQ(series.ceiling(), 1);
}

TEST(RollingSeries, takesNoSampleThatIsNotFinite) {
    RollingSeries series(10, 5);
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (const double hostile : {std::nan(""), infinite, -infinite}) {
        series.append(1, hostile); // as the first it would take in all that follow
        series.append(hostile, 1);
    }
    EXPECT_EQ(pointsOf(series), Points());
    series.append(1, 1);
    series.append(std::nan(""), 2); // and no mean would ever come back from this
    series.append(3, 2);
    series.append(4, infinite);
    EXPECT_EQ(pointsOf(series), (Points{{1, 2}}));
    EXPECT_TRUE(series.recent(std::nan(""), 1).empty());
    EXPECT_EQ(series.recent(infinite, 1).size(), 1U);
}

TEST(RollingSeries, staysInOrderWhenTheClockStepsBack) {
    RollingSeries series(100, 5);
    for (const double time : {0.0, 10.0, 20.0, 3.0, 12.0, 24.0, 26.0})
        series.append(time, time);
    EXPECT_EQ(pointsOf(series), (Points{{0, 0}, {10, 10}, {20, 14.75}, {26, 26}})); // until it has caught up
    EXPECT_EQ(series.mean(16, 26), (10 + 14.75 + 26) / 3);
    EXPECT_EQ(series.coverage(15, 26), 6);
}

TEST(RollingSeries, agreesWithAPlainComputation) {
    std::mt19937 random(20240503);
    std::uniform_real_distribution<double> step(0, 4), value(-1000, 1000);
    std::uniform_int_distribution<int> chance(0, 99);
    for (const double spacing : {0.0, 0.5, 5.0, 90.0}) { // the last one is longer than the age
        constexpr double maxAge = 60;
        RollingSeries series(maxAge, spacing);
        std::vector<Bucket> buckets;
        double time = 1'700'000'000;
        for (int sample = 0; sample < 3000; ++sample) {
            const int event = chance(random);
            time += event == 0 ? -20 * step(random) : event == 1 ? 30 * step(random) : std::round(step(random) * 4) / 4;
            const double figure = value(random);
            series.append(figure, time);
            if (spacing > 0 && !buckets.empty() && time - buckets.back().start < spacing)
                buckets.back().samples.push_back(figure);
            else
                buckets.push_back({time, {figure}});
            buckets = without(buckets, time - maxAge);
            ASSERT_NO_FATAL_FAILURE(expectSameFigures(series, buckets, 15 * step(random), time));
        }
    }
}

} // namespace ostrivane
