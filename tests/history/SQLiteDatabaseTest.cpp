#include "core/history/SQLiteDatabase.hpp"

#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <stdexcept>

namespace ostrivane {
namespace {

class SQLiteDatabaseTest : public testing::Test {
protected:
    std::int64_t count(std::string_view sql) {
        return database.query(sql, {}, [](const SQLiteDatabase::Row& row) { return row.integer(0); }).at(0);
    }

    TemporaryFolder folder;
    SQLiteDatabase database{folder.file("some.sqlite")};
};

TEST_F(SQLiteDatabaseTest, saysInSQLitesWordsWhatFails) {
    try {
        SQLiteDatabase(folder.file("no such folder/some.sqlite"));
        FAIL();
    } catch (const SQLiteError& error) {
        EXPECT_EQ(error.kind, SQLiteError::Kind::open);
        EXPECT_STREQ(error.what(), "unable to open database file");
    }
    try {
        database.run("SELEKT 1", {});
        FAIL();
    } catch (const SQLiteError& error) {
        EXPECT_EQ(error.kind, SQLiteError::Kind::prepare);
        EXPECT_STREQ(error.what(), "near \"SELEKT\": syntax error: SELEKT 1");
    }
    EXPECT_THROW(database.run("", {}), SQLiteError); // no statement at all
    EXPECT_THROW(database.execute("CREATE TABLE t(x); NONSENSE;"), SQLiteError);
    database.execute("CREATE TABLE u(x UNIQUE);");
    database.run("INSERT INTO u VALUES(?)", {std::int64_t{1}});
    try {
        database.run("INSERT INTO u VALUES(?)", {std::int64_t{1}});
        FAIL();
    } catch (const SQLiteError& error) {
        EXPECT_EQ(error.kind, SQLiteError::Kind::step);
        EXPECT_STREQ(error.what(), "UNIQUE constraint failed: u.x");
    }
}

TEST_F(SQLiteDatabaseTest, storesEachKindOfValueAndNoNumberThatIsNone) {
    database.execute("CREATE TABLE t(a, b, c, d, e, f);");
    database.run("INSERT INTO t VALUES(?,?,?,?,?,?)",
                 {std::numeric_limits<std::int64_t>::min(), 0.1, "naïve", nullptr,
                  std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::infinity()});
    database.each("SELECT * FROM t", {}, [](const SQLiteDatabase::Row& row) {
        EXPECT_EQ(row.integer(0), std::numeric_limits<std::int64_t>::min());
        EXPECT_EQ(row.real(1), 0.1);
        EXPECT_EQ(row.text(2), "naïve");
        EXPECT_EQ(row.view(2), "naïve");
        for (const int null : {3, 4, 5}) {
            EXPECT_EQ(row.integer(null), 0);
            EXPECT_FALSE(row.real(null));
            EXPECT_FALSE(row.text(null));
            EXPECT_EQ(row.view(null), "");
        }
    });
    EXPECT_EQ(count("SELECT COUNT(*) FROM t WHERE e IS NULL AND f IS NULL"), 1);
}

TEST_F(SQLiteDatabaseTest, forgetsTheBindingsOfTheRunBefore) {
    database.execute("CREATE TABLE t(a, b);");
    constexpr std::string_view insert = "INSERT INTO t VALUES(?,?)";
    database.run(insert, {std::int64_t{1}, "kept"});
    database.run(insert, {std::int64_t{2}});
    EXPECT_EQ(count("SELECT COUNT(*) FROM t WHERE b IS NULL"), 1);
    database.run("SELECT a FROM t", {}); // a row that comes is a success like none
    database.run("SELECT a FROM t", {});
}

TEST_F(SQLiteDatabaseTest, aTransactionThatFailsLeavesNothingAndTellsItsOwnError) {
    database.execute("CREATE TABLE t(a);");
    EXPECT_THROW(database.transaction([&] {
        database.run("INSERT INTO t VALUES(1)", {});
        throw std::runtime_error("of the body");
    }),
                 std::runtime_error);
    EXPECT_EQ(count("SELECT COUNT(*) FROM t"), 0);
    try { // the body ends the transaction itself: the rollback that follows fails, and is not what is told
        database.transaction([&] {
            database.execute("ROLLBACK;");
            database.run("INSERT INTO nowhere VALUES(1)", {});
        });
        FAIL();
    } catch (const SQLiteError& error) {
        EXPECT_STREQ(error.what(), "no such table: nowhere: INSERT INTO nowhere VALUES(1)");
    }
    database.transaction([&] { database.run("INSERT INTO t VALUES(1)", {}); });
    EXPECT_EQ(count("SELECT COUNT(*) FROM t"), 1);
}

TEST_F(SQLiteDatabaseTest, countsItsFileAndTheWriteAheadLog) {
    database.execute("CREATE TABLE t(a); INSERT INTO t VALUES(1);");
    const std::string file = folder.file("some.sqlite");
    EXPECT_GT(std::filesystem::file_size(file + "-wal"), 0U);
    EXPECT_EQ(database.fileSize(), std::filesystem::file_size(file) + std::filesystem::file_size(file + "-wal"));
    database.execute("PRAGMA journal_mode=DELETE;");
    EXPECT_EQ(database.fileSize(), std::filesystem::file_size(file));
    EXPECT_EQ(SQLiteDatabase(":memory:").fileSize(), 0U);
}

TEST_F(SQLiteDatabaseTest, aReaderSeesOneStateWhateverIsWrittenMeanwhile) {
    database.execute("CREATE TABLE t(a);");
    SQLiteDatabase reader(folder.file("some.sqlite"), SQLiteDatabase::Mode::readOnly);
    const auto rows = [&] {
        return reader.query("SELECT COUNT(*) FROM t", {},
                            [](const SQLiteDatabase::Row& row) { return row.integer(0); });
    };
    reader.reading([&] {
        EXPECT_EQ(rows().at(0), 0);
        database.run("INSERT INTO t VALUES(1)", {});
        EXPECT_EQ(rows().at(0), 0);
    });
    EXPECT_EQ(rows().at(0), 1);
    EXPECT_THROW(reader.run("INSERT INTO t VALUES(2)", {}), SQLiteError);
    EXPECT_THROW(SQLiteDatabase(folder.file("missing.sqlite"), SQLiteDatabase::Mode::readOnly), SQLiteError);
}

} // namespace
} // namespace ostrivane
