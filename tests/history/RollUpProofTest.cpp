#include "core/history/ResolutionLadder.hpp"
#include "core/history/SQLiteDatabase.hpp"
#include "core/history/SampleTables.hpp"
#include "tests/history/GeneratedSnapshots.hpp"
#include "tests/history/NaiveMinutes.hpp"
#include "tests/history/StoreHarness.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace ostrivane {
namespace {

constexpr std::int64_t day = 86400;

/// The tables as they must be, row by row and the long way.
class PlainTables {
public:
    void write(const FinishedBucket& minute) {
        system[{minute.system.bucket, minute.system.res}] = minute.system;
        for (const AppRow& row : minute.apps)
            apps[{row.appKey, row.bucket, row.res}] = row;
    }

    void maintain(std::int64_t now, std::int64_t retentionDays) {
        for (const RollUpStep& step : {RollUpStep{60, 900, day}, RollUpStep{900, 3600, 7 * day}}) {
            const std::int64_t cut = (now - step.age) / step.to * step.to;
            coarsenSystem(step, cut);
            coarsenApps(step, cut);
        }
        std::erase_if(system, [&](const auto& row) { return row.first.first < now - retentionDays * day; });
        std::erase_if(apps, [&](const auto& row) { return std::get<1>(row.first) < now - retentionDays * day; });
    }

    std::map<std::pair<std::int64_t, std::int64_t>, SystemRow> system;          ///< by bucket and res
    std::map<std::tuple<std::string, std::int64_t, std::int64_t>, AppRow> apps; ///< by key, bucket and res

private:
    void coarsenSystem(const RollUpStep& step, std::int64_t cut) {
        std::map<std::int64_t, std::vector<SystemRow>> groups;
        for (const auto& [key, row] : system)
            if (row.res == step.from && row.bucket < cut)
                groups[row.bucket / step.to * step.to].push_back(row);
        std::erase_if(system, [&](const auto& row) { return row.second.res == step.from && row.second.bucket < cut; });
        for (const auto& [bucket, rows] : groups)
            system[{bucket, step.to}] = coarse(bucket, step.to, rows);
    }

    void coarsenApps(const RollUpStep& step, std::int64_t cut) {
        std::map<std::pair<std::string, std::int64_t>, std::vector<AppRow>> groups;
        for (const auto& [key, row] : apps)
            if (row.res == step.from && row.bucket < cut)
                groups[{row.appKey, row.bucket / step.to * step.to}].push_back(row);
        std::erase_if(apps, [&](const auto& row) { return row.second.res == step.from && row.second.bucket < cut; });
        for (const auto& [key, rows] : groups)
            apps[{key.first, key.second, step.to}] = coarse(key, step, rows);
    }

    static SystemRow coarse(std::int64_t bucket, std::int64_t res, const std::vector<SystemRow>& rows) {
        SystemRow made;
        made.bucket = bucket;
        made.res = res;
        const auto count = static_cast<double>(rows.size());
        for (const auto field : {&SystemRow::cpu, &SystemRow::cpuUser, &SystemRow::cpuSystem, &SystemRow::memUsed,
                                 &SystemRow::memApp, &SystemRow::memWired, &SystemRow::memCompressed,
                                 &SystemRow::memCached, &SystemRow::swapUsed, &SystemRow::pressure}) {
            for (const SystemRow& row : rows)
                made.*field += row.*field;
            made.*field /= count;
        }
        for (const auto field : {&SystemRow::cpuMax, &SystemRow::memUsedMax, &SystemRow::pressureLevelMax})
            for (const SystemRow& row : rows)
                made.*field = std::max(made.*field, row.*field);
        for (const auto field : {&SystemRow::diskRead, &SystemRow::diskWrite, &SystemRow::netIn, &SystemRow::netOut})
            for (const SystemRow& row : rows)
                made.*field += row.*field;
        for (const auto field : {&SystemRow::gpu, &SystemRow::batteryPct, &SystemRow::powerW, &SystemRow::cpuTemp,
                                 &SystemRow::gpuTemp, &SystemRow::fanRPM}) {
            double sum = 0;
            double present = 0;
            for (const SystemRow& row : rows) {
                sum += (row.*field).value_or(0);
                present += (row.*field).has_value() ? 1 : 0;
            }
            if (present > 0)
                made.*field = sum / present;
        }
        for (const auto field : {&SystemRow::gpuMax, &SystemRow::cpuTempMax})
            for (const SystemRow& row : rows)
                if (row.*field)
                    made.*field = std::max((made.*field).value_or(*(row.*field)), *(row.*field));
        for (const SystemRow& row : rows)
            made.samples += row.samples;
        return made;
    }

    static AppRow coarse(const std::pair<std::string, std::int64_t>& key, const RollUpStep& step,
                         const std::vector<AppRow>& rows) {
        AppRow made;
        made.appKey = key.first;
        made.bucket = key.second;
        made.res = step.to;
        for (const AppRow& row : rows) {
            for (const auto field : {&AppRow::cpu, &AppRow::mem, &AppRow::gpu})
                made.*field += row.*field * static_cast<double>(step.from) / static_cast<double>(step.to);
            for (const auto field :
                 {&AppRow::energyJ, &AppRow::diskRead, &AppRow::diskWrite, &AppRow::netIn, &AppRow::netOut})
                made.*field += row.*field;
            made.cpuMax = std::max(made.cpuMax, row.cpuMax);
            made.memMax = std::max(made.memMax, row.memMax);
            made.samples += row.samples;
        }
        return made;
    }
};

/// The largest difference of two figures, measured on their size.
double difference(double a, double b) {
    return std::abs(a - b) / std::max(1.0, std::abs(a));
}

template <class Record>
double difference(const Record& a, const Record& b) {
    double most = 0;
    boost::mp11::mp_for_each<boost::describe::describe_members<Record, boost::describe::mod_any_access>>(
        [&](auto member) {
            const auto& one = a.*member.pointer;
            const auto& other = b.*member.pointer;
            using Field = std::decay_t<decltype(one)>;
            if constexpr (std::is_same_v<Field, double>)
                most = std::max(most, difference(one, other));
            else if constexpr (std::is_same_v<Field, std::optional<double>>)
                most = one && other                           ? std::max(most, difference(*one, *other))
                       : one.has_value() == other.has_value() ? most
                                                              : std::numeric_limits<double>::infinity();
            else if (one != other)
                most = std::numeric_limits<double>::infinity();
        });
    return most;
}

constexpr double rounding = 1e-12;

class RollUpProof : public testing::Test {
protected:
    std::vector<SystemRow> systemRows() { return harness.systemRows(Date{}, Date{1e12}); }

    std::vector<AppRow> appRows() {
        SQLiteDatabase file(harness.path);
        std::vector<AppRow> rows;
        for (const std::string& key : file.query("SELECT DISTINCT app_key FROM app_samples ORDER BY app_key", {},
                                                 [](const SQLiteDatabase::Row& row) { return row.text(0).value(); }))
            std::ranges::copy(SampleTables::appRows(file, key, 0), std::back_inserter(rows));
        return rows;
    }

    void maintain(double at) {
        harness.flush();
        harness.store->maintain(Date{at});
        harness.run();
    }

    static constexpr double begin = 1'700'006'400;
    TemporaryFolder folder;
    // Its clock stands still, so that it writes and tidies when the test says so, and never by itself.
    StoreHarness harness{folder.file("history.sqlite")};
};

TEST_F(RollUpProof, aFileOfMonthsHoldsWhatThePlainComputationHolds) {
    constexpr std::int64_t retention = 20;
    harness.store->setRetention(retention);
    GeneratedSnapshots snapshots(5, Date{begin}, 45);
    NaiveMinutes minutes;
    PlainTables plain;
    double maintained = begin;
    while (const SystemSnapshot* snapshot = snapshots.next()) {
        harness.ingest(*snapshot);
        if (const auto finished = minutes.add(*snapshot))
            plain.write(*finished);
        const double now = snapshot->timestamp.seconds;
        if (now - maintained >= 6 * 3600 || now < maintained) {
            maintained = now;
            maintain(now);
            plain.maintain(static_cast<std::int64_t>(now), retention);
        }
    }
    maintain(maintained);
    plain.maintain(static_cast<std::int64_t>(maintained), retention);

    const auto system = systemRows();
    ASSERT_EQ(system.size(), plain.system.size());
    EXPECT_GT(std::ranges::count(system, 3600, &SystemRow::res), 40);
    EXPECT_GT(std::ranges::count(system, 900, &SystemRow::res), 40);
    for (const SystemRow& row : system) {
        const auto expected = plain.system.find({row.bucket, row.res});
        ASSERT_NE(expected, plain.system.end()) << row.bucket << " " << row.res;
        EXPECT_LE(difference(row, expected->second), rounding) << row.bucket << " " << row.res;
    }
    const auto apps = appRows();
    ASSERT_EQ(apps.size(), plain.apps.size());
    for (const AppRow& row : apps) {
        const auto expected = plain.apps.find({row.appKey, row.bucket, row.res});
        ASSERT_NE(expected, plain.apps.end()) << row.appKey << " " << row.bucket << " " << row.res;
        EXPECT_LE(difference(row, expected->second), rounding) << row.appKey << " " << row.bucket << " " << row.res;
    }

    maintain(maintained); // a second time
    EXPECT_EQ(systemRows(), system);
    EXPECT_EQ(appRows(), apps);
}

TEST_F(RollUpProof, nothingIsLostOrCountedTwiceOnTheWayToHours) {
    harness.store->setRetention(400);
    GeneratedSnapshots snapshots(6, Date{begin}, 40);
    Totals fed;
    std::int64_t samples = 0;
    std::map<std::string, AppRow> byApp; // sums; `cpu` and `mem` times seconds
    const auto addApps = [](std::map<std::string, AppRow>& to, const std::vector<AppRow>& rows) {
        for (const AppRow& row : rows) {
            AppRow& sum = to[row.appKey];
            sum.cpu += row.cpu * static_cast<double>(row.res);
            sum.mem += row.mem * static_cast<double>(row.res);
            sum.gpu += row.gpu * static_cast<double>(row.res);
            for (const auto field :
                 {&AppRow::energyJ, &AppRow::diskRead, &AppRow::diskWrite, &AppRow::netIn, &AppRow::netOut})
                sum.*field += row.*field;
            sum.cpuMax = std::max(sum.cpuMax, row.cpuMax);
            sum.memMax = std::max(sum.memMax, row.memMax);
            sum.samples += row.samples;
        }
    };
    NaiveMinutes minutes;
    double last = begin;
    double maintained = begin;
    while (const SystemSnapshot* snapshot = snapshots.next()) {
        const double now = snapshot->timestamp.seconds;
        if (now < last) // a minute that comes again replaces the one before: not here
            continue;
        last = now;
        harness.ingest(*snapshot);
        if (const auto finished = minutes.add(*snapshot)) {
            fed.diskRead += finished->system.diskRead;
            fed.diskWrite += finished->system.diskWrite;
            fed.netIn += finished->system.netIn;
            fed.netOut += finished->system.netOut;
            samples += finished->system.samples;
            addApps(byApp, finished->apps);
        }
        if (now - maintained >= 3 * 3600) {
            maintained = now;
            maintain(now);
        }
    }
    maintain(last + 30 * day); // all of it in hours
    std::int64_t kept = 0;
    for (const SystemRow& row : systemRows()) {
        EXPECT_EQ(row.res, 3600);
        kept += row.samples;
    }
    EXPECT_EQ(kept, samples);
    const Totals totals = harness.totals();
    for (const auto field : {&Totals::diskRead, &Totals::diskWrite, &Totals::netIn, &Totals::netOut})
        EXPECT_LE(difference(totals.*field, fed.*field), rounding);
    std::map<std::string, AppRow> keptByApp;
    addApps(keptByApp, appRows());
    ASSERT_EQ(keptByApp.size(), byApp.size());
    for (const auto& [key, sums] : byApp)
        EXPECT_LE(difference(keptByApp.at(key), sums), 1e-11) << key;
}

} // namespace
} // namespace ostrivane
