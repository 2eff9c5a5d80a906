#include "core/history/AppSums.hpp"

#include "core/history/HistoryFile.hpp"
#include "core/history/Retention.hpp"
#include "core/history/SampleTables.hpp"
#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <string_view>

namespace ostrivane {
namespace {

constexpr std::int64_t day = 86400;

/// The ranking from the rows alone.
constexpr std::string_view plainTop =
    "SELECT s.app_key, COALESCE(a.name, s.app_key), a.bundle_id, SUM(s.cpu * s.res) / ?, MAX(s.mem_max), SUM(s.mem * "
    "s.res) / SUM(s.res), SUM(s.energy_j), SUM(s.disk_write), SUM(s.disk_read), SUM(s.net_in), SUM(s.net_out), "
    "SUM(s.res) / 60.0 FROM app_samples s LEFT JOIN apps a ON a.app_key = s.app_key WHERE s.bucket >= ? GROUP BY "
    "s.app_key ORDER BY SUM(s.cpu * s.res) DESC, s.app_key LIMIT ?";

class AppSumsTest : public testing::Test {
protected:
    void minute(std::int64_t bucket) {
        const auto few = [&] { return std::uniform_int_distribution<int>(0, 9)(random); };
        for (int index = 0; index < 12; ++index) {
            if (few() < 4) // comes and goes
                continue;
            AppRow row;
            row.bucket = bucket;
            row.res = 60;
            row.appKey = "exe:" + std::to_string(index);
            row.cpu = few() / 10.0;
            row.mem = few() * 1e7;
            row.memMax = row.mem + few() * 1e6;
            row.energyJ = row.diskRead = row.diskWrite = row.netIn = row.netOut = few();
            SampleTables::insert(*database, row);
        }
        AppSums::rowsCame(*database, bucket, bucket);
    }

    void expectPlainRanking(std::int64_t since, std::int64_t limit = -1) {
        const double window = 1000;
        const auto top = AppSums::top(*database, since, window, limit);
        std::size_t at = 0;
        database->each(plainTop, {window, since, limit}, [&](const SQLiteDatabase::Row& row) {
            ASSERT_LT(at, top.size());
            const AppUsageSummary& one = top[at++];
            EXPECT_EQ(one.appKey, row.text(0));
            EXPECT_EQ(one.name, row.text(1));
            EXPECT_EQ(one.bundleID, row.text(2));
            int column = 3;
            for (const double figure : {one.avgCPU, one.peakMemory, one.avgMemory, one.energyJ, one.diskWrite,
                                        one.diskRead, one.netIn, one.netOut, one.activeMinutes}) {
                EXPECT_NEAR(figure, row.real(column).value(), 1e-9 * (1 + figure)) << since << " column " << column;
                ++column;
            }
        });
        EXPECT_EQ(at, top.size());
    }

    std::int64_t spans() {
        return database
            ->query("SELECT COUNT(*) FROM app_sum_spans", {},
                    [](const SQLiteDatabase::Row& row) { return row.integer(0); })
            .at(0);
    }

    std::mt19937 random{7};
    TemporaryFolder folder;
    std::unique_ptr<SQLiteDatabase> database = HistoryFile::open(folder.file("history.sqlite"));
    const std::int64_t begin = 1'700'006'400 + 37 * 60; // in the middle of an hour
};

TEST_F(AppSumsTest, rankAsTheRowsDoThroughWeeksOfLife) {
    database->execute("INSERT INTO apps VALUES('exe:3', 'Three', 'org.three', 1);");
    std::int64_t mostSpans = 0;
    std::uniform_int_distribution<int> chance(0, 999);
    for (std::int64_t hour = begin; hour < begin + 14 * day; hour += 3600) {
        if (chance(random) < 60) // the machine sleeps
            hour += chance(random) * 60;
        if (chance(random) < 15) // the clock is set back
            hour -= chance(random) * 60;
        database->execute("BEGIN;");
        for (std::int64_t bucket = hour / 60 * 60; bucket < hour + 3600; bucket += 300)
            minute(bucket);
        if (chance(random) < 20) // the clock had been ahead, or is set back by days
            minute((hour - chance(random) * 600) / 60 * 60);
        database->execute("COMMIT;");
        Retention::maintain(*database, hour + 3600, 9);
        mostSpans = std::max(mostSpans, spans());
        if (chance(random) < 50)
            for (const std::int64_t age : {std::int64_t{1800}, 20 * std::int64_t{3600}, 3 * day, 9 * day, 30 * day})
                expectPlainRanking(hour - age);
    }
    expectPlainRanking(0);
    expectPlainRanking(0, 3);
    EXPECT_GT(mostSpans, 30) << "hours of two days, and the days before";
    EXPECT_LT(mostSpans, 70);
}

TEST_F(AppSumsTest, areMadeAFewAtATimeAndGoWithTheirRows) {
    database->execute("BEGIN;");
    for (std::int64_t bucket = begin; bucket < begin + 20 * day; bucket += 600)
        minute(bucket / 60 * 60);
    database->execute("COMMIT;");
    const std::int64_t now = begin + 20 * day;
    std::int64_t before = 0;
    for (int run = 0; run < 10; ++run) {
        Retention::maintain(*database, now, 30);
        EXPECT_LE(spans() - before, 12);
        before = spans();
        expectPlainRanking(begin);
    }
    EXPECT_GE(spans(), 18 + 24);
    Retention::maintain(*database, now, 2);
    expectPlainRanking(0);
    HistoryFile::clear(*database);
    EXPECT_EQ(spans(), 0);
    EXPECT_TRUE(AppSums::top(*database, 0, 60, -1).empty());
}

} // namespace
} // namespace ostrivane
