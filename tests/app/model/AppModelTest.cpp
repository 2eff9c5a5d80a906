#include "app/model/AppModel.hpp"

#include "app/model/AlertList.hpp"
#include "core/history/SQLiteDatabase.hpp"
#include "core/judgement/SessionSummaryJSON.hpp"
#include "core/model/Calendar.hpp"
#include "tests/app/model/ModelHarness.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <limits>

namespace ostrivane {
namespace {

constexpr std::uint64_t GiB = 1ULL << 30;

SystemSnapshot snapshotAt(Date date, double interval = 5) {
    SystemSnapshot snapshot = SystemSnapshot::empty(date);
    snapshot.interval = interval;
    snapshot.memory.total = 16 * GiB;
    return snapshot;
}

/// Each of the applications holds more memory than the rules allow.
SystemSnapshot hungry(Date date, int applications) {
    SystemSnapshot snapshot = snapshotAt(date);
    for (int index = 0; index < applications; ++index)
        snapshot.applications.push_back({.key = fmt::format("exe:{:03}", index),
                                         .name = fmt::format("App {:03}", index),
                                         .pids = {index + 1},
                                         .memory = 8 * GiB});
    return snapshot;
}

class AppModelTest : public testing::Test {
protected:
    const AppState& state() const { return harness.state(); }
    AppModel& model() { return *harness.model; }

    ModelHarness harness;
};

TEST_F(AppModelTest, aFirstSnapshotHasNoRates) {
    EXPECT_EQ(*state().snapshot, SystemSnapshot::empty(harness.now));
    SystemSnapshot first = snapshotAt(harness.now, 0);
    first.disk.readBytesPerSec = 1000;
    harness.apply(first);
    EXPECT_EQ(*state().snapshot, first);
    EXPECT_EQ(state().tick, 1);
    EXPECT_FALSE(state().hasFirstSample);
    EXPECT_TRUE(state().live[LiveKey::cpu].empty());
    EXPECT_EQ(state().launchTotals, Totals());
    first.interval = 2;
    harness.apply(first);
    EXPECT_TRUE(state().hasFirstSample);
    EXPECT_EQ(state().launchTotals.diskRead, 2000);
    first.disk.readBytesPerSec = std::numeric_limits<double>::quiet_NaN();
    first.network.outRate = 3;
    harness.apply(first);
    EXPECT_EQ(state().launchTotals, (Totals{.diskRead = 2000, .netOut = 6}));
}

TEST_F(AppModelTest, takesTicksOfTheEngineAndTheStoreBeforeIt) {
    harness.collectors->output.processes.resize(1);
    model().start();
    harness.settle();
    model().start(); // a second time: nothing is taken twice
    harness.settle();
    for (int minute = 0; minute < 3; ++minute) {
        harness.now = harness.now + 60;
        harness.clock->pass(60);
        harness.settle();
    }
    EXPECT_EQ(state().tick, 4);
    EXPECT_EQ(state().snapshot->timestamp, harness.clock->time);
    const auto rows = harness.answer<std::vector<SystemRow>>(
        [&](HistoryStore& store, auto got) { store.systemRows(Date{0}, harness.clock->time, std::move(got)); });
    EXPECT_GE(rows.size(), 2u);
    EXPECT_EQ(harness.clock->waited.back(), 5) << "nobody looks";
    model().setWindowVisible(true);
    harness.settle();
    EXPECT_EQ(harness.clock->waited.back(), 2);
}

TEST_F(AppModelTest, listsStoresAndShowsAlerts) {
    harness.apply(hungry(harness.now, 2));
    ASSERT_EQ(state().alerts.size(), 2u);
    EXPECT_EQ(harness.notified, state().alerts);
    const auto stored = harness.storedAlerts();
    ASSERT_EQ(stored.size(), 2u);
    EXPECT_EQ(stored.front().rule, "excessiveMemory");
    EXPECT_EQ(stored.front().severity, "warning");

    model().settings().set(&Preferences::notificationsEnabled, false);
    harness.apply(hungry(harness.now + 20'000, 3));
    EXPECT_EQ(state().alerts.size(), 5u) << "the cooldown is over";
    EXPECT_EQ(state().alerts.front().date, harness.now + 20'000);
    EXPECT_EQ(harness.notified.size(), 2u);
    EXPECT_EQ(harness.storedAlerts().size(), 5u);

    model().settings().set(&Preferences::notificationsEnabled, true);
    auto rules = model().settings()->alertRules;
    for (AlertRule& rule : rules)
        rule.notify = false;
    model().settings().set(&Preferences::alertRules, rules);
    model().applySettings();
    harness.apply(hungry(harness.now + 40'000, 3));
    EXPECT_EQ(harness.notified.size(), 2u) << "the rule does not want it";
}

TEST_F(AppModelTest, keepsTheNewestAlerts) {
    harness.apply(hungry(harness.now, 250));
    const Alert newest = state().alerts.front();
    harness.apply(hungry(harness.now + 20'000, 51));
    ASSERT_EQ(state().alerts.size(), AlertList::most);
    EXPECT_EQ(state().alerts.at(51), newest) << "the batch is on top";
    harness.apply(hungry(harness.now + 40'000, 400));
    ASSERT_EQ(state().alerts.size(), AlertList::most);
    EXPECT_EQ(state().alerts.front().subject, "exe:000");
    EXPECT_EQ(state().alerts.back().subject, "exe:299");
    EXPECT_EQ(harness.storedAlerts().size(), 701u) << "all are stored";
}

TEST_F(AppModelTest, beginsWithTheStoredAlerts) {
    model().history().recordAlert(Date{100}, "lowStorage", "critical", "Old", "Body", "/", {});
    model().history().recordAlert(Date{200}, "noSuchRule", "warning", "Unknown", "", std::nullopt, {});
    model().history().recordAlert(Date{300}, "swapGrowth", "grave", "New", "", std::nullopt, {});
    harness.settle();
    harness.apply(hungry(harness.now, 1));
    model().start();
    harness.settle();
    ASSERT_EQ(state().alerts.size(), 4u) << "the one of now was stored too, before the question";
    EXPECT_EQ(state().alerts[2].title, "New");
    EXPECT_EQ(state().alerts[2].severity, AlertSeverity::info);
    EXPECT_EQ(state().alerts[3].kind, AlertKind::lowStorage);
    EXPECT_EQ(state().alerts[3].severity, AlertSeverity::critical);
    EXPECT_FALSE(state().alerts[3].notify);
    EXPECT_NE(state().alerts[3].id, state().alerts[2].id);
}

TEST_F(AppModelTest, whatIsClearedStaysAway) {
    model().history().recordAlert(Date{100}, "lowStorage", "critical", "Old", "Body", "/", {});
    harness.settle();
    model().start();
    model().clearAlerts(); // the stored ones are on their way
    harness.settle();
    EXPECT_TRUE(state().alerts.empty());
    EXPECT_TRUE(harness.storedAlerts().empty());
}

TEST_F(AppModelTest, judgesEverySixthSnapshotUnlessSomebodyLooks) {
    int judged = 0;
    const Subscription watching =
        model().observe([&](const ModelChanges& changes) { judged += changes.health || changes.insights; });
    SystemSnapshot snapshot = snapshotAt(harness.now);
    const auto next = [&](double availablePercent) {
        snapshot.timestamp.seconds += 5;
        snapshot.memory.availablePercent = static_cast<std::int64_t>(availablePercent);
        harness.apply(snapshot);
    };
    for (int tick = 1; tick <= 5; ++tick)
        next(80 - tick);
    EXPECT_TRUE(state().health.empty());
    next(50);
    EXPECT_FALSE(state().health.empty());
    EXPECT_EQ(judged, 1);
    model().setPopoverVisible(true);
    next(40);
    EXPECT_EQ(judged, 2);
    next(40);
    EXPECT_EQ(judged, 2) << "nothing differs, nobody is woken";
    EXPECT_EQ(state().statusSummary(), "Everything looks normal");
    snapshot.memory.pressure = MemoryPressure::critical;
    next(5);
    EXPECT_EQ(state().statusSummary(), "Memory needs attention");
    snapshot.timestamp.seconds += 60;
    next(5);
    ASSERT_FALSE(state().insights.empty());
    EXPECT_EQ(state().insights.front().id, "pressure");
}

TEST_F(AppModelTest, recordsASession) {
    model().stopSession();
    EXPECT_EQ(state().lastSessionSummary, std::nullopt);
    model().startSession("");
    ASSERT_TRUE(state().session);
    EXPECT_EQ(state().sessionID, 0) << "not known yet";
    harness.settle();
    EXPECT_GT(state().sessionID, 0);
    harness.apply(snapshotAt(harness.now + 5));
    harness.now = harness.now + 10;
    model().stopSession();
    harness.settle();
    EXPECT_FALSE(state().session);
    ASSERT_TRUE(state().lastSessionSummary);
    EXPECT_EQ(state().lastSessionSummary->name, "Session");
    EXPECT_EQ(state().lastSessionSummary->samples, 1);
    const auto sessions = harness.storedSessions();
    ASSERT_EQ(sessions.size(), 1u);
    EXPECT_EQ(sessions[0].id, state().sessionID);
    EXPECT_EQ(sessions[0].end, harness.now);
    EXPECT_EQ(readSessionSummary(sessions[0].summaryJSON.value()), state().lastSessionSummary);
}

TEST_F(AppModelTest, endsASessionWhoseRowIsNotKnownYet) {
    model().startSession("one");
    model().startSession("two"); // ends the first
    model().stopSession();
    harness.settle();
    const auto sessions = harness.storedSessions();
    ASSERT_EQ(sessions.size(), 2u);
    for (const StoredSession& session : sessions) {
        EXPECT_TRUE(session.end) << session.name;
        EXPECT_EQ(readSessionSummary(session.summaryJSON.value_or("")).value().name, session.name);
    }
}

TEST_F(AppModelTest, keepsASessionThatBeganWhileTheFileWasHeld) {
    SQLiteDatabase other(harness.path);
    other.execute("BEGIN EXCLUSIVE");
    model().startSession("held");
    harness.settle();
    EXPECT_EQ(state().sessionID, 0);
    other.execute("ROLLBACK");
    model().stopSession();
    harness.settle();
    const auto sessions = harness.storedSessions();
    ASSERT_EQ(sessions.size(), 1u);
    EXPECT_TRUE(sessions[0].end);
    EXPECT_EQ(readSessionSummary(sessions[0].summaryJSON.value_or("")), state().lastSessionSummary);
}

TEST_F(AppModelTest, anIntervalFromAFileMakesNoBusyLoop) {
    for (const auto& [chosen, waited] : {std::pair{1e-9, 0.1}, {-5.0, 0.1}, {1e300, 3600.0}, {0.5, 0.5}}) {
        harness.stored->values["backgroundInterval"] = chosen;
        harness.open();
        model().start();
        harness.settle();
        EXPECT_EQ(harness.clock->waited.back(), waited) << chosen;
    }
}

TEST_F(AppModelTest, countsWhoLooks) {
    model().start();
    harness.settle();
    model().registerPage("cpu");
    model().registerPage("cpu");
    model().unregisterPage("cpu");
    EXPECT_EQ(model().demand().pages, PageSet{"cpu"});
    model().unregisterPage("cpu");
    model().unregisterPage("gpu"); // never came
    EXPECT_TRUE(model().demand().pages.empty());
    model().registerPage("gpu");
    EXPECT_TRUE(model().demand().pages.empty()) << "one call is missing now";
    model().registerPage("gpu");
    EXPECT_EQ(model().demand().pages, PageSet{"gpu"});
    model().setWindowVisible(true);
    harness.settle();
    harness.clock->pass();
    harness.settle();
    EXPECT_TRUE(harness.collectors->gpuPageShown) << "the engine was told";
}

TEST_F(AppModelTest, followsSettingsThatAnotherProgramChanges) {
    model().start();
    harness.settle();
    AppSettings other(std::make_unique<MemoryKeyValueStore>(harness.stored));
    auto rules = other->alertRules;
    for (AlertRule& rule : rules)
        rule.enabled = false;
    other.set(&Preferences::alertRules, rules);
    other.set(&Preferences::backgroundInterval, 7);
    other.set(&Preferences::idleThresholdHours, 1);
    harness.clock->pass();
    harness.settle();
    EXPECT_EQ(model().settings()->backgroundInterval, 7);
    harness.clock->pass();
    harness.settle();
    EXPECT_EQ(harness.clock->waited.back(), 7);
    EXPECT_EQ(harness.collectors->idleThreshold, 3600);
    harness.apply(hungry(harness.now, 3));
    EXPECT_TRUE(state().alerts.empty());
}

TEST_F(AppModelTest, anIntervalOfItsOwnStandsAgainstTheSettings) {
    harness.open({.interval = 0.5});
    model().start();
    harness.settle();
    EXPECT_EQ(harness.clock->waited.back(), 0.5);
}

TEST_F(AppModelTest, asksForTotalsOnceAMinute) {
    const auto minutes = [&](int count) {
        for (int minute = 0; minute < count; ++minute) {
            SystemSnapshot snapshot = snapshotAt(harness.now, 60);
            snapshot.cpu.usage = 0.5;
            snapshot.gpu.utilization = minute % 2 == 0 ? 0.2 : 0.4;
            snapshot.disk.readBytesPerSec = 100;
            model().history().ingest(std::make_shared<SystemSnapshot>(snapshot));
            harness.settle();
            harness.now = harness.now + 60;
        }
        model().history().flush();
        harness.settle();
    };
    harness.now = Calendar::startOfDay(harness.now) + 36'000;
    minutes(11); // the last is not finished
    model().start();
    harness.settle();
    EXPECT_EQ(state().todayTotals.diskRead, 60'000);
    EXPECT_EQ(state().monthTotals, state().todayTotals);
    EXPECT_NEAR(state().cpuAverageToday.value(), 0.5, 1e-12);
    EXPECT_NEAR(state().gpuStatsToday.value().avg, 0.3, 1e-12);
    EXPECT_EQ(state().gpuStatsToday->peak, 0.4);
    minutes(1);
    harness.apply(snapshotAt(harness.now));
    EXPECT_EQ(state().todayTotals.diskRead, 60'000) << "a minute has not passed by";
    harness.now = harness.now + 1;
    harness.apply(snapshotAt(harness.now));
    EXPECT_EQ(state().todayTotals.diskRead, 66'000);
    minutes(1);
    harness.now = harness.now + -1000;
    harness.apply(snapshotAt(harness.now));
    EXPECT_EQ(state().todayTotals.diskRead, 72'000) << "the clock was set back";
}

TEST_F(AppModelTest, sumsUpTheDayTheWeekAndTheMonthApart) {
    constexpr double day = 86400;
    harness.now = Calendar::startOfDay(harness.now) + 36'000;
    const Date noon = harness.now;
    for (const double daysAgo : {40, 20, 3, 0})
        for (const double minute : {0, 60}) { // the second finishes the first
            SystemSnapshot snapshot = snapshotAt(noon + (minute - 120 - daysAgo * day), 60);
            snapshot.disk.readBytesPerSec = daysAgo + 1;
            harness.now = snapshot.timestamp;
            model().history().ingest(std::make_shared<SystemSnapshot>(snapshot));
            harness.settle();
        }
    model().history().setRetention(90);
    harness.now = noon;
    model().refreshTotals();
    harness.settle();
    EXPECT_EQ(state().todayTotals.diskRead, 60);
    EXPECT_EQ(state().weekTotals.diskRead, 60 + 2 * 60 * 4) << "the last minute of a day is finished by the next day";
    EXPECT_EQ(state().monthTotals.diskRead, state().weekTotals.diskRead + 2 * 60 * 21);
}

TEST_F(AppModelTest, keepsTheTotalsThatCannotBeReadAnew) {
    model().history().ingest(std::make_shared<SystemSnapshot>(snapshotAt(harness.now, 60)));
    SystemSnapshot snapshot = snapshotAt(harness.now + -120, 60);
    snapshot.disk.readBytesPerSec = 7;
    model().history().ingest(std::make_shared<SystemSnapshot>(snapshot));
    model().history().flush();
    model().refreshTotals();
    harness.settle();
    const Totals known = state().todayTotals;
    SQLiteDatabase(harness.path).execute("DROP TABLE system_samples");
    model().refreshTotals();
    harness.settle();
    EXPECT_EQ(state().todayTotals, known);
    EXPECT_EQ(state().monthTotals, known);
}

TEST_F(AppModelTest, worksWithoutAHistory) {
    harness.path = harness.folder.file("missing/history.sqlite");
    harness.open();
    model().start();
    harness.apply(hungry(harness.now, 2));
    model().startSession("lost");
    harness.apply(snapshotAt(harness.now + 5));
    model().stopSession();
    harness.settle();
    EXPECT_EQ(state().alerts.size(), 2u);
    EXPECT_EQ(harness.notified.size(), 2u);
    EXPECT_EQ(state().sessionID, 0);
    EXPECT_EQ(state().lastSessionSummary.value().samples, 1);
    EXPECT_EQ(state().todayTotals, Totals());
}

TEST_F(AppModelTest, besideAnotherProgramItStoresNothingButSessions) {
    harness.open({.duties = {.keepsHistory = false, .notifies = false}});
    model().start();
    harness.settle();
    for (int minute = 0; minute < 3; ++minute) {
        harness.clock->pass(60);
        harness.settle();
    }
    harness.apply(hungry(harness.now, 2));
    EXPECT_EQ(state().alerts.size(), 2u);
    EXPECT_TRUE(harness.storedAlerts().empty());
    EXPECT_EQ(harness.answer<std::optional<Date>>(
                  [](HistoryStore& store, auto got) { store.earliestSample(std::move(got)); }),
              std::nullopt);
    model().startSession("beside");
    model().stopSession();
    harness.settle();
    EXPECT_EQ(harness.storedSessions().size(), 1u);
    EXPECT_TRUE(harness.notified.empty());

    model().setDuties({}); // the other one has ended
    for (int minute = 0; minute < 3; ++minute) {
        harness.clock->pass(60);
        harness.settle();
    }
    harness.apply(hungry(harness.now + 20'000, 2)); // past the cooldown
    EXPECT_EQ(harness.storedAlerts().size(), 2u);
    EXPECT_EQ(harness.notified.size(), 2u);
    EXPECT_NE(harness.answer<std::optional<Date>>(
                  [](HistoryStore& store, auto got) { store.earliestSample(std::move(got)); }),
              std::nullopt);
}

TEST_F(AppModelTest, observersComeAndGoWhileTheyAreCalled) {
    int first = 0;
    int second = 0;
    Subscription inner;
    Subscription outer = model().observe([&](const ModelChanges&) {
        ++first;
        inner = model().observe([&](const ModelChanges&) { ++second; });
    });
    harness.apply(snapshotAt(harness.now));
    outer.disconnect();
    harness.apply(snapshotAt(harness.now + 5));
    EXPECT_EQ(first, 1);
    EXPECT_GE(second, 1);
    inner.disconnect();
    model().select(Page::cpu);
    EXPECT_EQ(first, 1);
}

TEST_F(AppModelTest, mayEndWithAnswersUnderWay) {
    model().start();
    model().startSession("x");
    model().refreshTotals();
    harness.model.reset();
    harness.settle();
}

TEST_F(AppModelTest, findsApplicationsAndTheirProcesses) {
    SystemSnapshot snapshot = snapshotAt(harness.now);
    snapshot.applications = {{.key = "/Applications/One.app", .name = "One", .pids = {7, 3}}, {.key = "exe:two"}};
    snapshot.processes = {{.pid = 3}, {.pid = 5}, {.pid = 7}};
    harness.apply(snapshot);
    EXPECT_EQ(state().app(std::nullopt), nullptr);
    EXPECT_EQ(state().app("nothing"), nullptr);
    const ApplicationSnapshot* app = state().app("/Applications/One.app");
    ASSERT_TRUE(app);
    const auto processes = state().processes(*app);
    ASSERT_EQ(processes.size(), 2u);
    EXPECT_EQ(processes[0]->pid, 3);
    EXPECT_EQ(processes[1]->pid, 7);
    EXPECT_EQ(state().appName("/Applications/One.app"), "One");
    EXPECT_EQ(state().appName("/Applications/Gone.app"), "Gone.app");
}

TEST_F(AppModelTest, theSidebarIsRemembered) {
    EXPECT_TRUE(model().isSidebarVisible());
    model().setSidebarVisible(false);
    harness.open();
    EXPECT_FALSE(model().isSidebarVisible());
    harness.stored->values["sidebarVisible"] = std::string("no");
    harness.open();
    EXPECT_TRUE(model().isSidebarVisible());
}

} // namespace
} // namespace ostrivane
