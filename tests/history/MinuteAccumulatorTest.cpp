#include "core/history/MinuteAccumulator.hpp"

#include "tests/history/GeneratedSnapshots.hpp"
#include "tests/history/NaiveMinutes.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace ostrivane {

namespace {

constexpr double minute = 1'000'000'020; // a whole one
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

SystemSnapshot tick(double time = minute, double interval = 2) {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{time});
    snapshot.interval = interval;
    return snapshot;
}

ApplicationSnapshot application(std::string key, double cpu, std::uint64_t memory = 0) {
    ApplicationSnapshot app;
    app.key = std::move(key);
    app.cpu = cpu;
    app.memory = memory;
    return app;
}

/// The minute that these snapshots make.
FinishedBucket folded(const std::vector<SystemSnapshot>& snapshots) {
    MinuteAccumulator accumulator(60);
    for (const SystemSnapshot& snapshot : snapshots)
        EXPECT_FALSE(accumulator.add(snapshot));
    return accumulator.finish().value();
}

std::vector<AppRow> foldedApps(std::vector<ApplicationSnapshot> apps) {
    SystemSnapshot snapshot = tick();
    snapshot.applications = std::move(apps);
    return folded({snapshot}).apps;
}

bool isKept(const ApplicationSnapshot& app) {
    return !foldedApps({app}).empty();
}

std::vector<std::string> keys(const std::vector<AppRow>& rows) {
    std::vector<std::string> all;
    all.reserve(rows.size());
    for (const AppRow& row : rows)
        all.push_back(row.appKey);
    return all;
}

/// What a stretch of generated time held, to see that it was no idle one.
struct Seen {
    int minutes = 0;
    int fullMinutes = 0;    ///< with 60 applications
    int unnoticed = 0;      ///< rows of applications that the minute leaves out
    int stepsBack = 0;      ///< minutes before the one before
    int withoutReading = 0; ///< minutes without a reading of the graphics
    int uncounted = 0;      ///< snapshots
};

Seen compare(GeneratedSnapshots snapshots) {
    MinuteAccumulator accumulator(60);
    NaiveMinutes naive;
    Seen seen;
    std::optional<std::int64_t> before;
    std::set<std::string> present;
    const auto expectSame = [&](const std::optional<FinishedBucket>& given,
                                const std::optional<FinishedBucket>& expected) {
        ASSERT_EQ(given.has_value(), expected.has_value());
        if (!expected)
            return;
        ASSERT_EQ(given->system, expected->system) << "minute " << expected->system.bucket;
        ASSERT_EQ(keys(given->apps), keys(expected->apps)) << "minute " << expected->system.bucket;
        ASSERT_EQ(given->apps, expected->apps) << "minute " << expected->system.bucket;
        ++seen.minutes;
        seen.fullMinutes += expected->apps.size() == 60;
        seen.unnoticed += present.size() <= 60 && expected->apps.size() < present.size();
        seen.stepsBack += before && expected->system.bucket < *before;
        seen.withoutReading += !expected->system.gpu;
        before = expected->system.bucket;
    };
    while (const SystemSnapshot* snapshot = snapshots.next()) {
        const auto given = accumulator.add(*snapshot);
        const auto expected = naive.add(*snapshot);
        expectSame(given, expected);
        if (testing::Test::HasFatalFailure())
            return seen;
        if (expected)
            present.clear();
        if (snapshot->interval > 0)
            for (const ApplicationSnapshot& app : snapshot->applications)
                present.insert(app.key);
        else
            ++seen.uncounted;
    }
    expectSame(accumulator.finish(), naive.finish());
    for (const auto& [key, name] : naive.names) {
        const MinuteAccumulator::AppName* given = accumulator.appName(key);
        EXPECT_TRUE(given && NaiveMinutes::Name(given->name, given->bundleID) == name) << key;
    }
    return seen;
}

} // namespace

TEST(MinuteAccumulator, givesWhatTheSnapshotsOfAMinuteAmountTo) {
    const Seen weeks = compare(GeneratedSnapshots(1876, Date{1'700'000'000.25}, 35));
    EXPECT_GT(weeks.minutes, 5000);
    EXPECT_GT(weeks.fullMinutes, 30);
    EXPECT_GT(weeks.unnoticed, 1000);
    EXPECT_GT(weeks.stepsBack, 30);
    EXPECT_GT(weeks.withoutReading, 1000);
    EXPECT_GT(weeks.uncounted, 200);
}

// Before 1970 a minute is cut towards 0 too, which makes the one around it two minutes long.
TEST(MinuteAccumulator, givesItBefore1970Too) {
    EXPECT_GT(compare(GeneratedSnapshots(1877, Date{-4 * 86400 - 7200.5}, 8)).minutes, 1000);
    MinuteAccumulator accumulator(60);
    EXPECT_FALSE(accumulator.add(tick(-60.5)));
    EXPECT_EQ(accumulator.add(tick(-59.5)).value().system.bucket, -60);
    EXPECT_FALSE(accumulator.add(tick(59.5)));
    EXPECT_EQ(accumulator.add(tick(60)).value().system.bucket, 0);
}

TEST(MinuteAccumulator, closesAMinuteOnceAnotherBegins) {
    MinuteAccumulator accumulator(60);
    EXPECT_FALSE(accumulator.finish());
    EXPECT_FALSE(accumulator.add(tick(minute)));
    EXPECT_FALSE(accumulator.add(tick(minute + 39)));
    const FinishedBucket first = accumulator.add(tick(minute + 600)).value();
    EXPECT_EQ(first.system.bucket, 1'000'000'020);
    EXPECT_EQ(first.system.res, 60);
    EXPECT_EQ(first.system.samples, 2);
    EXPECT_EQ(first.system.pressureLevelMax, 1);
    EXPECT_FALSE(first.system.gpu || first.system.batteryPct || first.system.powerW || first.system.fanRPM);

    // The clock stepped back into a minute that was handed out: it is another one.
    EXPECT_EQ(accumulator.add(tick(minute + 59)).value().system.bucket, 1'000'000'620);
    EXPECT_EQ(accumulator.finish().value().system.samples, 1);
    EXPECT_FALSE(accumulator.finish());
}

TEST(MinuteAccumulator, countsNothingWithoutAnInterval) {
    for (const double interval : {0.0, -5.0, nan, -infinity}) {
        MinuteAccumulator accumulator(60);
        accumulator.add(tick(minute));
        SystemSnapshot uncounted = tick(minute + 60, interval);
        uncounted.applications = {application("exe:first", 1)};
        EXPECT_TRUE(accumulator.add(uncounted)) << "it still closes the minute before";
        EXPECT_FALSE(accumulator.appName("exe:first"));
        EXPECT_FALSE(accumulator.add(tick(minute + 120))) << "nothing counted in the minute it opened";
    }
}

TEST(MinuteAccumulator, takesNoRateToHaveHeldForLongerThanAMinute) {
    for (const double interval : {60.0, 3600.0, infinity}) {
        SystemSnapshot snapshot = tick(minute, interval);
        snapshot.disk.readBytesPerSec = 5;
        snapshot.applications = {application("exe:worker", 1)};
        snapshot.applications.front().powerW = 2;
        const FinishedBucket finished = folded({snapshot});
        EXPECT_EQ(finished.system.diskRead, 300);
        EXPECT_EQ(finished.apps.at(0).energyJ, 120);
    }
}

TEST(MinuteAccumulator, keepsPressureWithinItsScale) {
    const auto pressure = [](std::int64_t available) {
        SystemSnapshot snapshot = tick();
        snapshot.memory.availablePercent = available;
        return folded({snapshot}).system.pressure;
    };
    EXPECT_EQ(pressure(130), 0);
    EXPECT_EQ(pressure(30), 70);
    EXPECT_EQ(pressure(-5), 100);
    EXPECT_EQ(pressure(std::numeric_limits<std::int64_t>::min()), 100);

    SystemSnapshot critical = tick();
    critical.memory.pressure = MemoryPressure::critical;
    EXPECT_EQ(folded({tick(), critical, tick()}).system.pressureLevelMax, 4);
}

TEST(MinuteAccumulator, takesMeansOverWhatWasThere) {
    std::vector<SystemSnapshot> snapshots(10, tick());
    snapshots[3].gpu.utilization = 0.25;
    snapshots[7].gpu.utilization = 0.75;
    snapshots[3].thermal.cpuHottest = 90; // without a temperature of the processor it does not count
    snapshots[7].applications = {application("exe:worker", 30)};
    const FinishedBucket finished = folded(snapshots);
    EXPECT_EQ(finished.system.gpu, 0.5);
    EXPECT_EQ(finished.system.gpuMax, 0.75);
    EXPECT_FALSE(finished.system.cpuTempMax);
    EXPECT_EQ(finished.apps.at(0).cpu, 30);
    EXPECT_EQ(finished.apps.at(0).samples, 1);
}

TEST(MinuteAccumulator, leavesOutWhatHardlyDidAnything) {
    ApplicationSnapshot app = application("exe:quiet", 0.001, 20971520);
    app.diskReadRate = 1e9;
    app.netInRate = 256; // both for 2 seconds
    app.netOutRate = 256;
    app.powerW = 0.025;
    app.gpu = 1;
    EXPECT_FALSE(isKept(app)) << "on every border, and only reading";

    const auto keptWith = [&](auto change) {
        ApplicationSnapshot changed = app;
        change(changed);
        return isKept(changed);
    };
    EXPECT_TRUE(keptWith([](auto& it) { it.cpu = 0.0011; }));
    EXPECT_TRUE(keptWith([](auto& it) { ++it.memory; }));
    EXPECT_TRUE(keptWith([](auto& it) { it.diskWriteRate = 0.5; }));
    EXPECT_TRUE(keptWith([](auto& it) { it.netOutRate = 257; }));
    EXPECT_TRUE(keptWith([](auto& it) { it.powerW = 0.026; }));
    EXPECT_FALSE(keptWith([](auto& it) { it.cpu = it.diskWriteRate = nan; }));

    // The load is the mean's, the memory the greatest.
    std::vector<SystemSnapshot> snapshots(2, tick());
    snapshots[0].applications = {application("exe:short", 0.0015)};
    snapshots[1].applications = {application("exe:short", 0)};
    EXPECT_TRUE(folded(snapshots).apps.empty());
    snapshots[0].applications.front().memory = 20971521;
    EXPECT_EQ(folded(snapshots).apps.size(), 1U);
}

TEST(MinuteAccumulator, keepsTheSixtyThatWeighMost) {
    std::vector<ApplicationSnapshot> apps;
    std::vector<std::string> heaviestFirst;
    for (int at = 0; at <= 60; ++at) {
        // Memory and load both weigh, a core as much as 4 GB: by turns one or the other.
        const int place = (at * 17) % 61;
        const double weight = 100 - place;
        apps.push_back(
            at % 2 == 0 ? application("exe:" + std::to_string(place), weight / 4)
                        : application("exe:" + std::to_string(place), 0.002, static_cast<std::uint64_t>(weight * 1e9)));
        if (at < 60)
            heaviestFirst.push_back("exe:" + std::to_string(at));
    }
    EXPECT_EQ(keys(foldedApps(apps)), heaviestFirst);

    for (ApplicationSnapshot& app : apps)
        app = application(app.key, 1);
    const std::vector<std::string> equals = keys(foldedApps(apps));
    EXPECT_EQ(std::set<std::string>(equals.begin(), equals.end()).size(), 60U);
}

TEST(MinuteAccumulator, sortsFiguresThatAreNoNumbersLast) {
    const std::vector<double> loads = {nan, infinity, 1, -infinity, 0.5, -nan};
    std::vector<ApplicationSnapshot> apps;
    apps.reserve(90);
    for (int at = 0; at < 90; ++at)
        apps.push_back(application("exe:" + std::to_string(at), loads[static_cast<std::size_t>(at) % loads.size()],
                                   1'000'000'000));
    const std::vector<AppRow> rows = foldedApps(apps);
    ASSERT_EQ(rows.size(), 60U);
    for (std::size_t at = 0; at < 15; ++at) {
        EXPECT_EQ(rows[at].cpu, infinity);
        EXPECT_EQ(rows[at + 15].cpu, 1);
        EXPECT_EQ(rows[at + 30].cpu, 0.5);
        EXPECT_FALSE(std::isfinite(rows[at + 45].cpu));
        EXPECT_EQ(rows[at + 45].cpuMax, 0);
    }
}

TEST(MinuteAccumulator, keepsTheFirstNameOfAnApplication) {
    MinuteAccumulator accumulator(60);
    SystemSnapshot snapshot = tick();
    snapshot.applications = {application("exe:worker", 1)};
    snapshot.applications[0].name = "Worker";
    snapshot.applications[0].bundleID = "org.example.Worker";
    accumulator.add(snapshot);
    for (const double time : {minute + 120, minute + 180}) {
        accumulator.add(tick(time - 60)); // without it, so that its sums go
        snapshot.timestamp.seconds = time;
        snapshot.applications[0].name = "Renamed";
        snapshot.applications[0].bundleID.reset();
        accumulator.add(snapshot);
    }
    ASSERT_TRUE(accumulator.appName("exe:worker"));
    EXPECT_EQ(accumulator.appName("exe:worker")->name, "Worker");
    EXPECT_EQ(accumulator.appName("exe:worker")->bundleID, "org.example.Worker");
    EXPECT_FALSE(accumulator.appName("exe:other"));
}

TEST(MinuteAccumulator, holdsNoSumsOfApplicationsThatAreGone) {
    MinuteAccumulator accumulator(60);
    for (int at = 0; at < 1000; ++at) {
        SystemSnapshot snapshot = tick(minute + at * 60);
        snapshot.applications = {application("exe:" + std::to_string(at), 1), application("exe:stays", at + 1)};
        const auto finished = accumulator.add(snapshot);
        EXPECT_LE(accumulator.heldApps(), 3U);
        if (finished) {
            EXPECT_EQ(keys(finished->apps).size(), 2U) << "none of those before";
        }
    }
    const FinishedBucket last = accumulator.finish().value();
    EXPECT_EQ(
        last.apps.at(0),
        (AppRow{.bucket = 1'000'059'960, .res = 60, .appKey = "exe:stays", .cpu = 1000, .cpuMax = 1000, .samples = 1}))
        << "starts at 0 in each minute";
}

} // namespace ostrivane
