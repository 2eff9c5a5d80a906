#include "tests/cli/Program.hpp"

#include "core/history/HistoryExport.hpp"
#include "core/history/HistoryLock.hpp"
#include "core/history/HistoryStore.hpp"
#include "core/history/SQLiteDatabase.hpp"
#include "core/history/SampleTables.hpp"
#include "core/model/JSON.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/history/StoreHarness.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <variant>

namespace ostrivane {
namespace {

std::int64_t currentMinute() {
    using namespace std::chrono;
    return duration_cast<minutes>(system_clock::now().time_since_epoch()).count() * 60;
}

/// `ostrivanectl history` over a data folder of its own.
class HistoryCommand : public testing::Test {
protected:
    HistoryCommand() {
        ::setenv("OSTRIVANE_DATA_DIR", data.c_str(), 1);
        ::setenv("OSTRIVANE_CONFIG_DIR", folder.path().c_str(), 1);
    }
    ~HistoryCommand() override {
        ::unsetenv("OSTRIVANE_DATA_DIR");
        ::unsetenv("OSTRIVANE_CONFIG_DIR");
    }

    static Finished history(std::vector<std::string> arguments, const std::string& output = {}) {
        arguments.insert(arguments.begin(), "history");
        return runProgram(arguments, output);
    }

    /// Makes a file with ten minutes of the machine and of one application, an alert and two sessions.
    void fill() {
        std::filesystem::create_directory(data);
        StoreHarness store(file);
        SQLiteDatabase database(file);
        for (int minute = 20; minute > 10; --minute) {
            SystemRow row;
            row.bucket = currentMinute() - minute * 60;
            row.res = 60;
            row.cpu = row.cpuMax = 0.25;
            row.diskRead = 6'000'000;
            SampleTables::insert(database, row);
            rows.push_back(row);
            AppRow app;
            app.bucket = row.bucket;
            app.res = row.res;
            app.appKey = "exe:writer";
            app.cpu = 1.5;
            SampleTables::insert(database, app);
        }
        database.execute("INSERT INTO apps(app_key, name) VALUES('exe:writer', 'Wri\x1b[2Jter')");
        database.execute("INSERT INTO alerts(ts, severity, title, body) VALUES(1000, 'warning', 'Hot', 'Very hot')");
        database.execute("INSERT INTO sessions(name, start) VALUES('Build', 1000)");
    }

    std::size_t filesIn(const std::string& path) const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(path), std::filesystem::directory_iterator()));
    }

    const TemporaryFolder folder;
    const std::string data = folder.file("data");
    const std::string file = data + "/history.sqlite";
    std::vector<SystemRow> rows;
};

template <class Record>
std::optional<Record> recordFrom(const std::string& text) {
    const auto json = JSON::parse(text);
    return json ? JSON::read<Record>(*json) : std::nullopt;
}

TEST_F(HistoryCommand, saysThatThereIsNoneYetAndMakesNone) {
    const std::string none = "There is no history yet. \"ostrivanectl monitor\" keeps one in " + file + "\n";
    for (const char* command : {"rows", "top", "totals", "alerts", "sessions"}) {
        const Finished finished = history({command});
        EXPECT_EQ(finished.status, 0) << command;
        EXPECT_EQ(finished.out, none) << command;
    }
    EXPECT_TRUE(history({"status"}).out.starts_with(none));
    EXPECT_EQ(history({"rows", "--json"}).out, "[]\n");
    EXPECT_EQ(history({"clear", "--yes"}).out, none);
    EXPECT_EQ(history({"export"}).out, std::string(HistoryExport::columns) + "\n");
    EXPECT_FALSE(std::filesystem::exists(data));
}

TEST_F(HistoryCommand, readsBesideAWriter) {
    fill();
    auto lock = HistoryLock::take(data, "a writer");
    ASSERT_TRUE(std::holds_alternative<HistoryLock>(lock));
    StoreHarness writer(file);
    const Finished status = history({"status"});
    EXPECT_EQ(status.status, 0) << status.err;
    for (const char* part :
         {"a writer (process ", "1 min         10            10", "1 application, 1 alert, 1 session"})
        EXPECT_NE(status.out.find(part), std::string::npos) << part << " in\n" << status.out;
    EXPECT_EQ(recordFrom<std::vector<SystemRow>>(history({"rows", "--json", "--range", "1h"}).out), rows);
    EXPECT_NE(history({"rows", "--range", "1H"}).out.find("mean 100 KB/s"), std::string::npos);
    const auto totals = recordFrom<Totals>(history({"totals", "--json"}).out);
    ASSERT_TRUE(totals);
    EXPECT_EQ(totals->diskRead, 60'000'000);
    const Finished top = history({"top"});
    EXPECT_NE(top.out.find("Wri␛[2Jter"), std::string::npos) << top.out;
    EXPECT_NE(history({"app", "exe:writer", "--range", "1H"}).out.find("mean 150%"), std::string::npos);
    const Finished unknown = history({"app", "exe:none"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_NE(unknown.err.find("history top --range 24H --json"), std::string::npos);
    EXPECT_NE(history({"alerts"}).out.find("Very hot"), std::string::npos);
    EXPECT_NE(history({"sessions"}).out.find("not finished"), std::string::npos);
}

TEST_F(HistoryCommand, followsTheSettings) {
    fill();
    EXPECT_NE(history({"status"}).out.find("Kept for    30 days"), std::string::npos);
    folder.write("settings.ini", "[General]\nretentionDays=1\n");
    EXPECT_NE(history({"status"}).out.find("Kept for    1 day\n"), std::string::npos);
}

TEST_F(HistoryCommand, exportsTheSameToAFileAndToAPipe) {
    fill();
    const std::string target = folder.file("out.csv");
    const Finished named = history({"export", "--range", "1H", "--out", target});
    EXPECT_EQ(named.status, 0) << named.err;
    EXPECT_EQ(named.out, "");
    EXPECT_EQ(named.err, "10 rows in " + target + "\n");
    EXPECT_EQ(contentOf(target), HistoryExport::text(rows));
    EXPECT_EQ(history({"export", "--range", "1H"}).out, contentOf(target));
    const Finished failed = history({"export", "--out", folder.file("missing/out.csv")});
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.err, "ostrivanectl: " + folder.file("missing/out.csv") + ": No such file or directory\n");
    EXPECT_EQ(filesIn(folder.path()), 2U) << "the data and what was exported";
}

TEST_F(HistoryCommand, clearsOnlyWhenToldTo) {
    fill();
    EXPECT_EQ(history({"clear"}).status, 2) << "nobody to ask";
    {
        const auto lock = HistoryLock::take(data, "a writer");
        const Finished beside = history({"clear", "--yes"});
        EXPECT_EQ(beside.status, 1);
        EXPECT_NE(beside.err.find("a writer (process "), std::string::npos) << beside.err;
    }
    TerminalRun declined({"history", "clear"}, 80, 24);
    ASSERT_TRUE(declined.sees("[y/N]"));
    declined.type("\n");
    EXPECT_EQ(declined.wait(), 0);
    EXPECT_NE(declined.written.find("Nothing was deleted."), std::string::npos);
    EXPECT_EQ(recordFrom<std::vector<SystemRow>>(history({"rows", "--json"}).out), rows);
    TerminalRun agreed({"history", "clear"}, 80, 24);
    ASSERT_TRUE(agreed.sees("[y/N]"));
    agreed.type("y\n");
    EXPECT_EQ(agreed.wait(), 0);
    EXPECT_NE(agreed.written.find("Deleted: 10 rows of the machine, 10 of 1 application, 1 alert, 1 session"),
              std::string::npos)
        << agreed.written;
    EXPECT_EQ(history({"rows", "--json"}).out, "[]\n");
    EXPECT_EQ(history({"sessions", "--json"}).out, "[]\n");
}

TEST_F(HistoryCommand, showsNothingOfADamagedFile) {
    fill();
    std::filesystem::remove(file + "-wal");
    std::filesystem::resize_file(file, 5000);
    for (const char* command : {"status", "rows", "top", "totals", "app x", "alerts", "sessions", "export"}) {
        const std::string name = command;
        const Finished finished = name == "app x" ? history({"app", "x"}) : history({name});
        EXPECT_EQ(finished.status, 1) << command;
        EXPECT_NE(finished.err.find("database disk image is malformed"), std::string::npos) << command << finished.err;
        for (const char* guess : {"none yet", "0 alerts", "Nothing", "There are no"})
            EXPECT_EQ(finished.out.find(guess), std::string::npos) << command << ": " << finished.out;
    }
    EXPECT_EQ(history({"clear", "--yes"}).status, 1);
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    EXPECT_EQ(history({"totals", "--json"}).err, "ostrivanectl: " + file + ": not an ordinary file\n");
}

TEST_F(HistoryCommand, refusesWhatItDoesNotKnow) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {}, {"rows", "--range", "2Y"}, {"top", "--limit", "0"}, {"app"}, {"export", "--out", ""}})
        EXPECT_EQ(history(arguments).status, 2);
}

} // namespace
} // namespace ostrivane
