#include "core/history/HistoryStore.hpp"

#include "core/history/SQLiteDatabase.hpp"
#include "tests/history/StoreHarness.hpp"

#include <gtest/gtest.h>

#include <boost/asio/thread_pool.hpp>

#include <atomic>
#include <cmath>
#include <future>
#include <limits>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace ostrivane {
namespace {

SystemSnapshot snapshotAt(double seconds, double load = 0.5) {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{seconds});
    snapshot.interval = 10;
    snapshot.cpu.usage = load;
    snapshot.disk.readBytesPerSec = 100;
    snapshot.battery.isPresent = true;
    snapshot.battery.systemPowerW = 30;
    snapshot.applications = {
        {.key = "exe:one", .name = "One", .cpu = load, .memory = 100'000'000},
        {.key = "exe:two", .name = "Two", .bundleID = "org.two", .cpu = load / 2, .memory = 50'000'000}};
    return snapshot;
}

class HistoryStoreTest : public testing::Test {
protected:
    /// A snapshot of that second, taken when the clock shows it.
    void tick(double seconds, double load = 0.5) {
        harness.now = Date{seconds};
        harness.ingest(snapshotAt(seconds, load));
    }

    SQLiteDatabase file() { return SQLiteDatabase(harness.path); }
    std::int64_t stored(const std::string& table) {
        return file()
            .query("SELECT COUNT(*) FROM " + table, {}, [](const SQLiteDatabase::Row& row) { return row.integer(0); })
            .at(0);
    }

    TemporaryFolder folder;
    StoreHarness harness{folder.file("history.sqlite")};
    const double start = 1'000'000'020; // of a minute
};

TEST_F(HistoryStoreTest, keepsMinutesAndReadsThemBeforeTheyAreWritten) {
    harness.now = Date{start};
    harness.open();
    tick(start + 1);
    tick(start + 59);
    EXPECT_TRUE(harness.systemRows().empty()) << "the minute under way is nobody's yet";
    harness.now = Date{start + 59}; // the first write comes a minute after the start
    harness.ingest(snapshotAt(start + 61));
    EXPECT_EQ(stored("system_samples"), 0);
    const auto rows = harness.systemRows();
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].bucket, static_cast<std::int64_t>(start));
    EXPECT_EQ(rows[0].samples, 2);
    EXPECT_EQ(harness.appRows("exe:one").size(), 1U);
    EXPECT_DOUBLE_EQ(harness.totals().diskRead, 2 * 10 * 100);
    EXPECT_DOUBLE_EQ(harness.totals().energyWh, 30.0 * 60 / 3600);
    EXPECT_EQ(harness.answer<std::optional<Date>>([](HistoryStore& store, auto to) { store.earliestSample(to); }),
              Date{start});
    EXPECT_TRUE(harness.systemRows(Date{start + 1}).empty());
    EXPECT_TRUE(harness.systemRows(Date{}, Date{start - 1}).empty());
    EXPECT_TRUE(harness.appRows("exe:one", Date{start + 1}).empty());
    EXPECT_TRUE(harness.appRows("exe:none").empty());

    tick(start + 62);
    EXPECT_EQ(stored("system_samples"), 1);
    EXPECT_EQ(stored("app_samples"), 2);
    EXPECT_EQ(harness.systemRows(), rows) << "the file gives back what was put in";
    EXPECT_DOUBLE_EQ(harness.totals().diskRead, 2 * 10 * 100) << "counted once";
    harness.open();
    EXPECT_EQ(harness.systemRows(), rows);
}

TEST_F(HistoryStoreTest, ranksWithEverythingThatIsFinished) {
    harness.now = Date{start};
    harness.open();
    for (int minute = 0; minute < 3; ++minute)
        harness.ingest(snapshotAt(start + minute * 60, 0.5)); // two finished, nothing written
    harness.now = Date{start + 120};
    const auto top = harness.topApps(Date{start}, 10);
    ASSERT_EQ(top.size(), 2U);
    EXPECT_EQ(stored("app_samples"), 4);
    EXPECT_EQ(top[0].appKey, "exe:one");
    EXPECT_EQ(top[0].name, "One");
    EXPECT_FALSE(top[0].bundleID);
    EXPECT_DOUBLE_EQ(top[0].avgCPU, 0.5 * 120 / 120);
    EXPECT_DOUBLE_EQ(top[0].avgMemory, 1e8);
    EXPECT_DOUBLE_EQ(top[0].activeMinutes, 2);
    EXPECT_EQ(top[1].bundleID, "org.two");
    EXPECT_EQ(harness.topApps(Date{start}, 1).size(), 1U);
    EXPECT_TRUE(harness.topApps(Date{start}, 0).empty());
    const auto late = harness.topApps(Date{start + 60 - 10}, 1); // 70 s of window, one row in it
    EXPECT_DOUBLE_EQ(late.at(0).avgCPU, 0.5 * 60 / 70);
    harness.now = Date{start + 61};
    EXPECT_DOUBLE_EQ(harness.topApps(Date{start + 60}, 1).at(0).avgCPU, 0.5) << "a window of a minute at least";
}

TEST_F(HistoryStoreTest, tellsWhatRanAtAMoment) {
    const auto at = [&](double second, std::int64_t limit = -1) {
        return harness.answer<std::vector<AppMoment>>(
            [&](HistoryStore& store, auto to) { store.appsAt(Date{second}, limit, std::move(to)); });
    };
    SystemSnapshot second = snapshotAt(start + 60);
    second.applications.erase(second.applications.begin());
    second.applications[0].cpu = 2;
    harness.ingest(snapshotAt(start, 0.5));
    harness.ingest(second);
    harness.ingest(snapshotAt(start + 120));
    const auto first = at(start + 59.9);
    ASSERT_EQ(first.size(), 2U) << "minutes that wait in memory count";
    EXPECT_EQ(first[0], (AppMoment{.appKey = "exe:one", .name = "One", .cpu = 0.5, .mem = 1e8}));
    EXPECT_EQ(at(start, 1).size(), 1U);
    const auto later = at(start + 60);
    ASSERT_EQ(later.size(), 1U);
    EXPECT_EQ(later[0].appKey, "exe:two");
    EXPECT_DOUBLE_EQ(later[0].cpu, 2);
    EXPECT_TRUE(at(start - 1).empty());
    EXPECT_TRUE(at(start + 120).empty()) << "the minute under way is nobody's yet";

    harness.store->maintain(Date{start + 10 * 86400});
    EXPECT_EQ(at(start + 700).size(), 2U) << "an hour's row holds each of its seconds";
}

TEST_F(HistoryStoreTest, namesAnApplicationAnewInTheNextRunAndKeepsItsIdentifier) {
    const auto name = [&](const std::string& key) {
        return harness.answer<std::optional<std::string>>(
            [&](HistoryStore& store, auto to) { store.appName(key, std::move(to)); });
    };
    const auto minuteNamed = [&](double at, const std::string& called) {
        SystemSnapshot snapshot = snapshotAt(at);
        snapshot.applications[1].name = called;
        snapshot.applications[1].bundleID = called;
        harness.ingest(snapshot);
        harness.ingest(snapshotAt(at + 60));
        harness.flush();
    };
    minuteNamed(start, "First");
    minuteNamed(start + 60, "Second");
    EXPECT_EQ(name("exe:two"), "First");
    EXPECT_FALSE(name("exe:none"));
    harness.open();
    minuteNamed(start + 600, "Third");
    EXPECT_EQ(name("exe:two"), "Third");
    const auto top = harness.topApps();
    EXPECT_EQ(top.at(1).bundleID, "First");
}

TEST_F(HistoryStoreTest, tidiesAtItsFirstSnapshotAndOnceAnHour) {
    harness.store->setRetention(0); // a day at least
    const auto rowOfAge = [&](double days) {
        file().execute("INSERT OR REPLACE INTO system_samples(bucket, res) VALUES(" +
                       std::to_string(static_cast<std::int64_t>(harness.now.seconds - days * 86400)) + ", 3600);");
    };
    harness.now = Date{start};
    rowOfAge(0.9);
    rowOfAge(1.1);
    EXPECT_EQ(stored("system_samples"), 2);
    tick(start);
    EXPECT_EQ(stored("system_samples"), 1) << "the older one went at the first snapshot";
    tick(start + 1);
    rowOfAge(1.1);
    tick(start + 3590);
    EXPECT_EQ(stored("system_samples WHERE res = 3600"), 2);
    tick(start + 3600);
    EXPECT_EQ(stored("system_samples WHERE res = 3600"), 1);
}

TEST_F(HistoryStoreTest, doesNotFillMemoryWithSnapshotsThatWait) {
    harness.now = Date{start};
    harness.open();
    for (int second = 0; second < 300; ++second) // while the store is busy
        harness.store->ingest(std::make_shared<SystemSnapshot>(snapshotAt(start + second / 10.0)));
    harness.run();
    harness.ingest(snapshotAt(start + 60)); // there is room again
    ASSERT_EQ(harness.systemRows().size(), 1U);
    EXPECT_EQ(harness.systemRows()[0].samples, 128);
}

TEST_F(HistoryStoreTest, answersManyThreadsInTheOrderOfEach) {
    boost::asio::thread_pool pool(3);
    std::atomic<int> inOrder = 0;
    {
        HistoryStore store(pool.get_executor(), folder.file("shared.sqlite"));
        std::vector<std::thread> askers;
        for (int asker = 0; asker < 4; ++asker)
            askers.emplace_back([&] {
                auto last = std::make_shared<std::int64_t>(0);
                for (int alert = 0; alert < 50; ++alert)
                    store.recordAlert(Date{1}, "rule", "info", "title", "body", std::nullopt,
                                      [&, last](std::int64_t id) { inOrder += id > std::exchange(*last, id) ? 1 : 0; });
            });
        for (std::thread& asker : askers)
            asker.join();
        std::promise<void> flushed;
        store.flush([&] { flushed.set_value(); });
        flushed.get_future().wait();
    } // it goes while its executor lives on
    pool.join();
    EXPECT_EQ(inOrder, 200);
}

TEST_F(HistoryStoreTest, writesAgainAfterTheClockWasSetBack) {
    tick(start);
    tick(start + 60);
    tick(start + 121);
    EXPECT_EQ(stored("system_samples"), 2);
    tick(start - 7200); // closes the minute, whatever its time
    EXPECT_EQ(stored("system_samples"), 3);
    tick(start - 7140);
    tick(start - 7079);
    EXPECT_EQ(stored("system_samples"), 5);
}

TEST_F(HistoryStoreTest, keepsAlertsSessionsAndSizes) {
    HistoryStore& store = *harness.store;
    const auto alert = [&](double at, const char* title, std::optional<std::string> subject) {
        return harness.answer<std::int64_t>([&](HistoryStore& to, auto answer) {
            to.recordAlert(Date{at}, "rule", "info", title, "body", std::move(subject), std::move(answer));
        });
    };
    const std::int64_t first = alert(100, "older", std::nullopt);
    const std::int64_t second = alert(200.9, "newer", "exe:one");
    EXPECT_GT(first, 0);
    EXPECT_GT(second, first);
    const auto alerts = [&](std::int64_t limit) {
        return harness.answer<std::vector<StoredAlert>>(
            [&](HistoryStore& from, auto answer) { from.alerts(limit, std::move(answer)); });
    };
    EXPECT_EQ(alerts(10),
              (std::vector<StoredAlert>{{second, Date{200}, "rule", "info", "newer", "body", "exe:one"},
                                        {first, Date{100}, "rule", "info", "older", "body", std::nullopt}}));
    EXPECT_EQ(alerts(1).size(), 1U);
    store.clearAlerts();
    EXPECT_TRUE(alerts(10).empty());

    const auto session = [&](const char* name, double at) {
        return harness.answer<std::int64_t>(
            [&](HistoryStore& to, auto answer) { to.startSession(name, Date{at}, std::move(answer)); });
    };
    const auto sessions = [&] {
        return harness.answer<std::vector<StoredSession>>(
            [](HistoryStore& from, auto answer) { from.sessions(std::move(answer)); });
    };
    const std::int64_t compile = session("Compile", 100);
    const std::int64_t test = session("Test", 200);
    store.finishSession(compile, Date{150}, "{}");
    EXPECT_EQ(sessions(), (std::vector<StoredSession>{{test, "Test", Date{200}, std::nullopt, std::nullopt},
                                                      {compile, "Compile", Date{100}, Date{150}, "{}"}}));
    file().execute("UPDATE sessions SET name = NULL;");
    EXPECT_EQ(sessions().at(0).name, "Session");
    store.deleteSession(test);
    EXPECT_EQ(sessions().size(), 1U);

    const std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();
    for (const auto& [at, bytes] : {std::pair{300.0, 30ULL}, std::pair{100.0, 10ULL}, std::pair{200.0, 20ULL}})
        store.recordStorage("/", bytes, Date{at});
    store.recordStorage("/", 21, Date{200.5}); // in the same second: the later size stands
    store.recordStorage("/other", huge, Date{100});
    const auto series = [&](const char* path, double since) {
        return harness.answer<std::vector<StorageSize>>(
            [&](HistoryStore& from, auto answer) { from.storageSeries(path, Date{since}, std::move(answer)); });
    };
    const auto baseline = [&](const char* path, double since) {
        return harness.answer<std::optional<StorageSize>>(
            [&](HistoryStore& from, auto answer) { from.storageBaseline(path, Date{since}, std::move(answer)); });
    };
    EXPECT_EQ(series("/", 0), (std::vector<StorageSize>{{Date{100}, 10}, {Date{200}, 21}, {Date{300}, 30}}));
    EXPECT_EQ(baseline("/", 150), (StorageSize{Date{200}, 21}));
    EXPECT_FALSE(baseline("/", 301));
    EXPECT_EQ(series("/other", 0).at(0).bytes, huge / 2) << "the most that a column holds";
}

TEST_F(HistoryStoreTest, clearsAllAndBeginsAnew) {
    tick(start);
    tick(start + 60);
    harness.flush();
    harness.ingest(snapshotAt(start + 120)); // one finished minute waits, another is under way
    harness.store->startSession("Work", Date{start}, {});
    harness.store->recordStorage("/", 1, Date{start});
    harness.store->recordAlert(Date{start}, "rule", "info", "title", "body", std::nullopt);
    harness.store->clearAll();
    harness.run();
    const HistoryStatus status = harness.status();
    EXPECT_TRUE(status.resolutions.empty());
    EXPECT_EQ(status.apps + status.alerts + status.sessions + status.storageSizes, 0);
    EXPECT_EQ(status.pendingSystem + status.pendingApps, 0);
    EXPECT_EQ(stored("meta"), 1);
    EXPECT_FALSE(harness.problem());
    harness.ingest(snapshotAt(start + 180));
    EXPECT_TRUE(harness.systemRows().empty()) << "the minute that was under way is gone too";
    harness.ingest(snapshotAt(start + 240));
    harness.flush();
    EXPECT_EQ(stored("apps"), 2) << "names are written anew";
}

TEST_F(HistoryStoreTest, isReadableBesideItsWriterAndChangesNothing) {
    tick(start);
    tick(start + 61);
    harness.flush();
    StoreHarness reader(harness.path, HistoryAccess::readOnly);
    EXPECT_EQ(reader.systemRows().size(), 1U);
    EXPECT_EQ(reader.topApps().size(), 2U);
    tick(start + 122);
    EXPECT_EQ(reader.systemRows().size(), 2U);
    reader.store->clearAll();
    reader.run();
    EXPECT_EQ(reader.problem(), "attempt to write a readonly database");
    EXPECT_EQ(harness.systemRows().size(), 2U);
}

TEST_F(HistoryStoreTest, isTheOwnersAlone) {
    struct stat facts {};
    ASSERT_EQ(::stat(harness.path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777U, 0600U);
    for (const char* side : {"-wal", "-shm"}) {
        ASSERT_EQ(::stat((harness.path + side).c_str(), &facts), 0);
        EXPECT_EQ(facts.st_mode & 0777U, 0600U) << side;
    }
    ASSERT_EQ(::chmod(harness.path.c_str(), 0644), 0);
    harness.open();
    ASSERT_EQ(::stat(harness.path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777U, 0600U);
}

TEST_F(HistoryStoreTest, aRowOfNullsReadsAsZeros) {
    file().execute("INSERT INTO system_samples(bucket, res) VALUES(60, 60);"
                   "INSERT INTO app_samples(bucket, res, app_key) VALUES(60, 60, 'exe:null');"
                   "INSERT INTO alerts(id) VALUES(1); INSERT INTO sessions(id) VALUES(1);"
                   "INSERT INTO storage_snapshots(path, ts) VALUES('/', 1);");
    SystemRow system;
    system.bucket = system.res = 60;
    EXPECT_EQ(harness.systemRows(), std::vector{system});
    EXPECT_EQ(harness.systemRows().at(0).pressureLevelMax, 1);
    AppRow app;
    app.bucket = app.res = 60;
    app.appKey = "exe:null";
    EXPECT_EQ(harness.appRows("exe:null"), std::vector{app});
    EXPECT_EQ(harness.totals(), Totals());
    const auto top = harness.topApps();
    ASSERT_EQ(top.size(), 1U);
    EXPECT_EQ(top[0].name, "exe:null");
    EXPECT_EQ(top[0].avgCPU, 0);
    EXPECT_EQ(top[0].activeMinutes, 1);
    EXPECT_EQ(harness.answer<std::vector<StoredAlert>>([](HistoryStore& s, auto to) { s.alerts(9, to); }).size(), 1U);
    EXPECT_EQ(harness.answer<std::vector<StoredSession>>([](HistoryStore& s, auto to) { s.sessions(to); }).size(), 1U);
}

TEST_F(HistoryStoreTest, aDateThatIsNoNumberTraps) {
    EXPECT_DEATH(harness.systemRows(Date{std::nan("")}), "");
}

} // namespace
} // namespace ostrivane
