#include "core/history/Retention.hpp"

#include "core/history/HistoryFile.hpp"
#include "core/history/RecordTables.hpp"
#include "core/history/ResolutionLadder.hpp"
#include "core/history/SampleTables.hpp"
#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace ostrivane {
namespace {

constexpr std::int64_t day = 86400;

/// Every row of every table but those of the sums, as text.
std::string dump(SQLiteDatabase& database) {
    std::string text;
    for (const char* table :
         {"system_samples ORDER BY bucket, res", "app_samples ORDER BY app_key, bucket, res", "apps ORDER BY app_key",
          "alerts ORDER BY id", "sessions ORDER BY id", "storage_snapshots ORDER BY path, ts"})
        database.each("SELECT * FROM " + std::string(table), {}, [&](const SQLiteDatabase::Row& row) {
            for (int column = 0; column < 28; ++column)
                text += std::string(row.view(column)) + "|";
            text += "\n";
        });
    return text;
}

class RetentionTest : public testing::Test {
protected:
    void system(std::int64_t bucket, double cpu, std::optional<double> gpu = std::nullopt) {
        SystemRow row;
        row.bucket = bucket;
        row.res = 60;
        row.cpu = row.cpuMax = cpu;
        row.gpu = gpu;
        row.pressureLevelMax = cpu > 15 ? 4 : 1;
        row.diskRead = 100;
        row.samples = 6;
        SampleTables::insert(*database, row);
    }
    void app(const char* key, std::int64_t bucket, double cpu) {
        AppRow row;
        row.bucket = bucket;
        row.res = 60;
        row.appKey = key;
        row.cpu = row.cpuMax = cpu;
        row.mem = row.memMax = 15e6;
        row.energyJ = 2;
        row.samples = 6;
        SampleTables::insert(*database, row);
    }
    std::vector<SystemRow> systemRows() {
        return SampleTables::systemRows(*database, 0, std::numeric_limits<std::int64_t>::max());
    }

    TemporaryFolder folder;
    std::unique_ptr<SQLiteDatabase> database = HistoryFile::open(folder.file("history.sqlite"));
    const std::int64_t now = 1'000'000'000;
};

TEST_F(RetentionTest, coarsensOnlyWholeBuckets) {
    EXPECT_EQ(alignedCut(now, minutesToQuarters), 999'913'500);
    const std::int64_t cut = alignedCut(now, minutesToQuarters);
    for (int minute = 0; minute < 15; ++minute)
        system(cut - 900 + minute * 60, minute == 7 ? 24 : 9, minute < 3 ? std::optional(0.3) : std::nullopt);
    system(cut, 5);
    for (int minute = 0; minute < 5; ++minute)
        app("exe:some", cut - 900 + minute * 60, 30);
    Retention::maintain(*database, now, 30);
    const auto rows = systemRows();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].bucket, cut - 900);
    EXPECT_EQ(rows[0].res, 900);
    EXPECT_DOUBLE_EQ(rows[0].cpu, 10);
    EXPECT_EQ(rows[0].cpuMax, 24);
    EXPECT_EQ(rows[0].pressureLevelMax, 4);
    EXPECT_DOUBLE_EQ(rows[0].gpu.value(), 0.3) << "the mean over the minutes that had it";
    EXPECT_DOUBLE_EQ(rows[0].diskRead, 1500);
    EXPECT_EQ(rows[0].samples, 90);
    EXPECT_EQ(rows[1].res, 60);
    const auto apps = SampleTables::appRows(*database, "exe:some", 0);
    ASSERT_EQ(apps.size(), 1U);
    EXPECT_DOUBLE_EQ(apps[0].cpu, 10) << "minutes without a row count as zero";
    EXPECT_DOUBLE_EQ(apps[0].mem, 5e6);
    EXPECT_EQ(apps[0].memMax, 15e6);
    EXPECT_DOUBLE_EQ(apps[0].energyJ, 10);
    EXPECT_EQ(apps[0].samples, 30);

    Retention::maintain(*database, now + 6 * day + 3600, 30);
    const auto hourly = systemRows();
    ASSERT_EQ(hourly.size(), 1U) << "both quarters lie in one hour";
    EXPECT_EQ(hourly[0].res, 3600);
    EXPECT_EQ(hourly[0].samples, 96);
    EXPECT_DOUBLE_EQ(hourly[0].cpu, 7.5) << "quarters weigh the same, whatever they are of";
    EXPECT_DOUBLE_EQ(hourly[0].gpu.value(), 0.3);
}

TEST_F(RetentionTest, keepsWhatIsToBeKeptAndChangesNothingTheSecondTime) {
    for (const std::int64_t age : {31 * day, 29 * day, 9 * day, 8 * day, 3 * day, day + 1800, day / 2}) {
        system(now - age, 1);
        app("exe:some", now - age, 1);
    }
    for (const double days : {31, 29})
        RecordTables::insertAlert(
            *database, {0, Date{static_cast<double>(now) - days * day}, "r", "info", "t", "b", std::nullopt});
    RecordTables::insertSession(*database, "Old", now - 400 * day);
    for (const int days : {60, 91})
        RecordTables::insertStorage(*database, "/", now - days * day, 1);
    Retention::maintain(*database, now, 30);
    const std::string once = dump(*database);
    EXPECT_EQ(systemRows().size(), 6U);
    EXPECT_EQ(RecordTables::alerts(*database, 9).size(), 1U);
    EXPECT_EQ(RecordTables::sessions(*database).size(), 1U);
    EXPECT_EQ(RecordTables::storageSeries(*database, "/", 0).size(), 1U);
    Retention::maintain(*database, now, 30);
    EXPECT_EQ(dump(*database), once);
    Retention::maintain(*database, now, 1);
    EXPECT_EQ(systemRows().size(), 1U);
    EXPECT_EQ(RecordTables::storageSeries(*database, "/", 0).size(), 1U) << "sizes are kept 90 days all the same";
    Retention::maintain(*database, now, std::numeric_limits<std::int64_t>::max()); // stops at the smallest number
    EXPECT_EQ(systemRows().size(), 1U);
}

TEST_F(RetentionTest, changesNothingWhenAStatementFails) {
    for (int minute = 0; minute < 100; ++minute)
        system(now - 3 * day + minute * 60, 1);
    const std::string before = dump(*database);
    database->execute("ALTER TABLE alerts RENAME TO elsewhere;");
    EXPECT_THROW(Retention::maintain(*database, now, 30), SQLiteError);
    database->execute("ALTER TABLE elsewhere RENAME TO alerts;");
    EXPECT_EQ(dump(*database), before);
}

} // namespace
} // namespace ostrivane
