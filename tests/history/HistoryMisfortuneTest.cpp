#include "core/history/SQLiteDatabase.hpp"
#include "tests/history/Misfortune.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrivane {
namespace {

using misfortune::inChild;
using misfortune::integrity;
using misfortune::live;
using misfortune::snapshotAt;
using misfortune::start;

/// A file with 200 minutes in it, closed in order.
std::string goodFile(const TemporaryFolder& folder) {
    StoreHarness harness(folder.file("history.sqlite"));
    live(harness, 0, 200);
    harness.flush();
    return harness.path;
}

/// Everything is harmless without a file.
void expectHarmless(StoreHarness& harness) {
    live(harness, 0, 3);
    harness.flush();
    EXPECT_TRUE(harness.systemRows().empty());
    EXPECT_TRUE(harness.appRows("exe:application-1").empty());
    EXPECT_TRUE(harness.topApps().empty());
    EXPECT_EQ(harness.totals(), Totals());
    EXPECT_FALSE(harness.answer<bool>([](HistoryStore& store, auto to) { store.isAvailable(to); }));
    EXPECT_EQ(harness.answer<std::uint64_t>([](HistoryStore& store, auto to) { store.sizeOnDisk(to); }), 0U);
    EXPECT_EQ(harness.answer<std::int64_t>([](HistoryStore& store, auto to) {
        store.recordAlert(Date{1}, "rule", "info", "title", "body", std::nullopt, to);
    }),
              0);
    EXPECT_EQ(harness.answer<std::int64_t>([](HistoryStore& store, auto to) { store.startSession("s", Date{1}, to); }),
              0);
    EXPECT_FALSE(harness.answer<std::optional<Date>>([](HistoryStore& store, auto to) { store.earliestSample(to); }));
    harness.store->clearAll();
    harness.store->maintain(Date{1});
    harness.store->deleteSession(1);
    harness.store->recordStorage("/", 1, Date{1});
    harness.run();
    EXPECT_EQ(harness.problem(), harness.openError());
    EXPECT_EQ(harness.status().openError, harness.openError());
}

TEST(HistoryMisfortune, killedAtAnyMomentItOpensWholeWithAllThatWasWritten) {
    constexpr int kills = 200;
    std::mt19937 random{11};
    TemporaryFolder folder;
    const std::string path = folder.file("history.sqlite");
    int minute = 0;
    for (int kill = 0; kill < kills; ++kill) {
        int pipe[2];
        ASSERT_EQ(::pipe(pipe), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            StoreHarness harness(path);
            for (;; ++minute) {
                harness.now = Date{start + minute * 60};
                harness.ingest(snapshotAt(start + minute * 60)); // with maintenance from time to time
                harness.flush();
                if (::write(pipe[1], &minute, sizeof minute) != sizeof minute)
                    ::_exit(1);
            }
        }
        ::close(pipe[1]);
        int written = -1; // the minute before it is in the file
        ASSERT_EQ(::read(pipe[0], &written, sizeof written), static_cast<ssize_t>(sizeof written));
        std::this_thread::sleep_for(std::chrono::microseconds(std::uniform_int_distribution(0, 15000)(random)));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        for (int next = 0; ::read(pipe[0], &next, sizeof next) == static_cast<ssize_t>(sizeof next);)
            written = next;
        ::close(pipe[0]);

        StoreHarness harness(path);
        ASSERT_EQ(harness.openError(), std::nullopt);
        ASSERT_EQ(integrity(path), "ok");
        const std::size_t kept = harness.systemRows(Date{start + minute * 60}).size();
        ASSERT_GE(kept, static_cast<std::size_t>(written - minute));
        ASSERT_LE(kept, static_cast<std::size_t>(written - minute + 1)); // one more than was said, at the most
        minute = written + 2;                                            // what was under way is lost, and no more
    }
}

TEST(HistoryMisfortune, leavesAFileAloneThatIsNoDatabase) {
    TemporaryFolder folder;
    const std::string content(5000, 'x');
    StoreHarness harness(folder.write("history.sqlite", content));
    EXPECT_EQ(harness.openError(), "file is not a database");
    expectHarmless(harness);
    std::ifstream file(harness.path, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), content);
    StoreHarness reader(harness.path, HistoryAccess::readOnly);
    EXPECT_EQ(reader.openError(), "file is not a database");
}

TEST(HistoryMisfortune, goesOnWithAFileThatWasCutOff) {
    for (const double part : {0.05, 0.5, 0.9}) {
        TemporaryFolder folder;
        const std::string path = goodFile(folder);
        std::filesystem::resize_file(
            path, static_cast<std::uintmax_t>(part * static_cast<double>(std::filesystem::file_size(path))));
        StoreHarness harness(path);
        const HistoryStatus status = harness.status();
        EXPECT_TRUE(status.openError || status.readError) << part;
        live(harness, 300, 303);
        harness.flush();
        harness.topApps();
        harness.totals();
        harness.store->maintain(harness.now);
        harness.run();
        EXPECT_EQ(harness.status().pendingSystem, status.openError ? 0 : 3) << "kept in memory, to be written one day";
        EXPECT_TRUE(harness.problem()) << part;
    }
}

TEST(HistoryMisfortune, losesOfADamagedLogOnlyWhatIsDamaged) {
    TemporaryFolder folder;
    StoreHarness writer(folder.file("history.sqlite"));
    live(writer, 0, 100);
    writer.flush();
    // As after a crash: the file and its log, without the end that would have merged them.
    const std::string copy = folder.file("copy.sqlite");
    std::filesystem::copy_file(writer.path, copy);
    std::filesystem::copy_file(writer.path + "-wal", copy + "-wal");
    {
        std::fstream log(copy + "-wal", std::ios::binary | std::ios::in | std::ios::out);
        log.seekp(static_cast<std::streamoff>(std::filesystem::file_size(copy + "-wal") * 3 / 4));
        log << std::string(3000, '\xee');
    }
    StoreHarness harness(copy);
    EXPECT_FALSE(harness.openError());
    EXPECT_EQ(integrity(copy), "ok");
    const std::size_t left = harness.systemRows().size();
    EXPECT_GT(left, 10U);
    EXPECT_LT(left, 100U);
    live(harness, 200, 202);
    harness.flush();
    EXPECT_EQ(harness.systemRows().size(), left + 2);
}

TEST(HistoryMisfortune, readsInAFolderWhereNothingCanBeWritten) {
    TemporaryFolder folder;
    const std::string path = goodFile(folder);
    constexpr uid_t nobody = 65534;
    if (::geteuid() == 0) {
        for (const std::string& owned : {folder.path().string(), path})
            ASSERT_EQ(::chown(owned.c_str(), nobody, nobody), 0);
    }
    ASSERT_EQ(::chmod(folder.path().c_str(), 0500), 0);
    const bool allowed = inChild([&] {
        if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0))
            return false;
        StoreHarness reader(path, HistoryAccess::readOnly);
        EXPECT_EQ(reader.systemRows().size(), 200U);
        EXPECT_EQ(reader.topApps().size(), 20U);
        StoreHarness nowhere(folder.file("other.sqlite"));
        EXPECT_EQ(nowhere.openError(), "unable to open database file");
        expectHarmless(nowhere);
        return true;
    });
    ::chmod(folder.path().c_str(), 0700);
    EXPECT_TRUE(allowed);
}

TEST(HistoryMisfortune, noticesThatItsFolderIsGoneAndWritesWhenItIsBack) {
    TemporaryFolder folder;
    const std::filesystem::path home = folder.path() / "data";
    std::filesystem::create_directory(home);
    StoreHarness harness((home / "history.sqlite").string());
    live(harness, 0, 2);
    std::filesystem::rename(home, folder.path() / "elsewhere");
    live(harness, 3, 5);
    EXPECT_EQ(harness.problem(), "the file was removed or replaced while it was in use");
    EXPECT_EQ(harness.systemRows().size(), 5U);
    std::filesystem::rename(folder.path() / "elsewhere", home);
    live(harness, 6, 7);
    EXPECT_EQ(harness.problem(), std::nullopt);
    EXPECT_EQ(harness.status().pendingSystem, 0);
    std::filesystem::remove_all(home);
    live(harness, 8, 200); // with maintenance, which would succeed on the file without a name
    EXPECT_TRUE(harness.problem());
    EXPECT_EQ(harness.answer<std::int64_t>([](HistoryStore& store, auto to) { store.startSession("s", Date{1}, to); }),
              0);
    harness.open();
    EXPECT_EQ(harness.openError(), "unable to open database file");
}

TEST(HistoryMisfortune, openedAgainItKeepsTheMinutesThatWaited) {
    TemporaryFolder folder;
    const std::filesystem::path home = folder.path() / "data";
    StoreHarness harness((home / "history.sqlite").string());
    EXPECT_EQ(harness.openError(), "unable to open database file");
    harness.store->reopen();
    EXPECT_EQ(harness.problem(), "unable to open database file") << "there is still no folder";
    std::filesystem::create_directory(home);
    harness.store->reopen();
    live(harness, 0, 5);
    EXPECT_EQ(harness.problem(), std::nullopt);
    std::filesystem::remove_all(home);
    live(harness, 6, 9);
    EXPECT_TRUE(harness.problem());
    std::filesystem::create_directory(home);
    harness.store->reopen();
    live(harness, 10, 12);
    EXPECT_EQ(harness.problem(), std::nullopt);
    EXPECT_EQ(harness.status().pendingSystem, 0);
    const auto rows = harness.systemRows();
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows.front().bucket, static_cast<std::int64_t>(start) + 5 * 60) << "what was in the old file is gone";
    EXPECT_EQ(rows.size(), 7U);
    EXPECT_EQ(harness.answer<std::optional<std::string>>(
                  [](HistoryStore& store, auto to) { store.appName("exe:application-1", to); }),
              "Application")
        << "the new file learned the names";
    harness.store->close();
    live(harness, 13, 15);
    EXPECT_TRUE(harness.systemRows().empty());
    EXPECT_EQ(integrity(harness.path), "ok");
}

TEST(HistoryMisfortune, writesAnAlertThatMetALockWhenItCan) {
    TemporaryFolder folder;
    StoreHarness harness(folder.file("history.sqlite"));
    SQLiteDatabase other(harness.path);
    other.execute("BEGIN EXCLUSIVE");
    EXPECT_EQ(harness.answer<std::int64_t>([](HistoryStore& store, auto to) {
        store.recordAlert(Date{start}, "rule", "info", "title", "body", std::nullopt, to);
    }),
              0);
    harness.flush();
    EXPECT_TRUE(harness.problem());
    other.execute("ROLLBACK");
    harness.flush();
    EXPECT_EQ(harness.problem(), std::nullopt);
    const auto alerts =
        harness.answer<std::vector<StoredAlert>>([](HistoryStore& store, auto to) { store.alerts(10, to); });
    ASSERT_EQ(alerts.size(), 1U);
    EXPECT_EQ(alerts[0].title, "title");
    harness.flush();
    EXPECT_EQ(harness.status().alerts, 1) << "once";
}

TEST(HistoryMisfortune, readsNothingOutOfAFileThatIsJustBegun) {
    TemporaryFolder folder;
    StoreHarness reader(folder.write("history.sqlite", ""), HistoryAccess::readOnly);
    EXPECT_EQ(reader.openError(), std::nullopt);
    EXPECT_TRUE(reader.systemRows().empty());
    EXPECT_TRUE(reader.topApps().empty());
}

TEST(HistoryMisfortune, saysThatTracesAreLeftWhileAnotherProgramReads) {
    TemporaryFolder folder;
    StoreHarness harness(goodFile(folder));
    SQLiteDatabase other(harness.path);
    other.reading([&] {
        other.each("SELECT COUNT(*) FROM system_samples", {}, [](const SQLiteDatabase::Row&) {});
        harness.store->clearAll();
        harness.run();
        EXPECT_EQ(harness.problem(), "another program is reading it");
        EXPECT_TRUE(harness.systemRows().empty());
    });
    harness.store->clearAll();
    harness.run();
    EXPECT_EQ(harness.problem(), std::nullopt);
}

TEST(HistoryMisfortune, tellsOfMaintenanceThatFailsAgainAndAgain) {
    TemporaryFolder folder;
    StoreHarness harness(folder.file("history.sqlite"));
    SQLiteDatabase(harness.path)
        .execute("CREATE TRIGGER t BEFORE DELETE ON alerts BEGIN SELECT RAISE(ABORT, 'not today'); END;"
                 "INSERT INTO alerts(ts) VALUES(1);");
    live(harness, 0, 2);
    EXPECT_EQ(harness.problem(), std::nullopt) << "one that met a lock is made good an hour later";
    EXPECT_EQ(harness.status().maintenanceError, "not today");
    live(harness, 3, 62);
    EXPECT_EQ(harness.problem(), "old rows are not tidied away: not today");
    SQLiteDatabase(harness.path).execute("DROP TRIGGER t;");
    live(harness, 63, 123);
    EXPECT_EQ(harness.problem(), std::nullopt);
}

TEST(HistoryMisfortune, keepsTheNewestWhileAnotherProgramHoldsTheFile) {
    TemporaryFolder folder;
    StoreHarness harness(folder.file("history.sqlite"));
    live(harness, 0, 2);
    SQLiteDatabase other(harness.path);
    other.execute("BEGIN IMMEDIATE;");
    constexpr int apps = 14;
    live(harness, 3, 1510, apps);
    EXPECT_EQ(harness.problem(), "database is locked");
    HistoryStatus status = harness.status();
    EXPECT_EQ(status.pendingSystem, 1500);
    EXPECT_EQ(status.pendingApps, 20000);
    const auto rows = harness.systemRows();
    EXPECT_EQ(rows.back().date(), Date{start + 1509 * 60});
    EXPECT_EQ(rows.at(rows.size() - 1500).date(), Date{start + 10 * 60}) << "the oldest are gone";
    EXPECT_EQ(harness.answer<std::int64_t>([](HistoryStore& store, auto to) {
        store.recordAlert(Date{1}, "rule", "info", "title", "body", std::nullopt, to);
    }),
              0);
    other.execute("COMMIT;");
    live(harness, 1511, 1512, apps);
    EXPECT_EQ(harness.problem(), std::nullopt);
    status = harness.status();
    EXPECT_EQ(status.pendingSystem + status.pendingApps, 0);
    EXPECT_EQ(harness.appRows("exe:application-3").back().date(), Date{start + 1511 * 60});

    StoreHarness late(folder.file("locked.sqlite"));
    SQLiteDatabase holder(late.path);
    holder.execute("BEGIN EXCLUSIVE;");
    late.open();
    EXPECT_EQ(late.openError(), "database is locked");
}

} // namespace
} // namespace ostrivane
