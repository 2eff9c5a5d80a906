#include "core/judgement/SessionSummaryJSON.hpp"
#include "tests/TimeZone.hpp"
#include "tests/app/model/DayPlayer.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

// The figures here were worked out from the README of the recording.

namespace ostrivane {

namespace {

constexpr double midnight = 1'794'873'600; // 2026-11-17 00:00 UTC
constexpr double MiB = 1 << 20;
constexpr double GiB = 1 << 30;

double at(int hours, int minutes, int seconds = 0) {
    return midnight + hours * 3600 + minutes * 60 + seconds;
}

/// "15:10:00"
std::string timeOf(Date date) {
    const auto second = static_cast<int>(date.seconds - midnight);
    return fmt::format("{:02}:{:02}:{:02}", second / 3600, second / 60 % 60, second % 60);
}

std::string_view word(HealthCategory::Status status) {
    constexpr std::array<std::string_view, 4> words = {"good", "elevated", "high", "unknown"};
    return words[static_cast<std::size_t>(status)];
}

/// What a person would have seen who looked all day, as far as it changed.
struct Seen {
    void look(const AppState& state) {
        const std::string time = timeOf(state.snapshot->timestamp);
        for (const HealthCategory& category : state.health) {
            std::string_view& known = health[category.id];
            if (known != word(category.status))
                healthChanges += fmt::format("{} {} {} > {} ({})\n", time, category.id, known.empty() ? "-" : known,
                                             word(category.status), category.label);
            known = word(category.status);
        }
        std::map<std::string, bool> present;
        for (const Insight& insight : state.insights)
            present[insight.id] = true;
        for (const auto& [id, isPresent] : present)
            if (!insights[id])
                insightChanges += fmt::format("{} +{}\n", time, id);
        for (const auto& [id, wasPresent] : insights)
            if (wasPresent && !present.contains(id))
                insightChanges += fmt::format("{} -{}\n", time, id);
        insights = std::move(present);
    }

    std::map<std::string, std::string_view> health;
    std::string healthChanges;
    std::map<std::string, bool> insights;
    std::string insightChanges;
};

std::string told(const std::vector<Insight>& insights) {
    constexpr std::array<std::string_view, 3> levels = {"info", "notice", "warning"};
    std::string text;
    for (const Insight& insight : insights)
        text += fmt::format("{} {}: {}\n    {}\n", levels[static_cast<std::size_t>(insight.level)], insight.id,
                            insight.title, insight.evidence);
    return text;
}

/// Oldest first.
std::string told(const std::vector<Alert>& alerts) {
    std::string text;
    for (auto alert = alerts.rbegin(); alert != alerts.rend(); ++alert)
        text += fmt::format("{} {} {} {}\n    {}\n    {}\n", timeOf(alert->date), rawValue(alert->kind),
                            rawValue(alert->severity), alert->subject.value_or("-"), alert->title, alert->body);
    return text;
}

constexpr std::string_view expectedAlerts = R"(10:00:00 idleServer info 4100
    Web server on port 5173, 5174 looks idle
    Running for 1 days, nobody connected, using 180 MB.
10:52:00 memoryGrowth warning /usr/share/applications/lantern.desktop
    Lantern keeps using more memory
    Up 1.02 GB in 1h, now 3.02 GB.
12:02:00 unusualCPU info exe:indexer
    indexer is using unusually high CPU
    51% over the last 5 min, versus 2.0% typical over the past hour.
12:06:00 sustainedCPU warning exe:indexer
    indexer is keeping the CPU busy
    83% on average for 10 min.
13:04:00 diskWrite warning exe:archiver
    archiver is hammering the disk
    53.3 MB/s on average for 5 min (about 14.9 GB).
14:01:00 lowStorage warning /
    System is running out of space
    49.5 GB free of 500 GB (9%).
15:10:00 excessiveMemory warning /usr/share/applications/atlas.desktop
    Atlas is using 6.00 GB
    That's 37% of this computer's 16.0 GB of memory, across 1 processes.
15:15:00 memoryPressure warning system
    Memory pressure has been elevated for 5 min
    Swap in use: 1.12 GB. Atlas is the largest app at 6.00 GB.
15:26:00 swapGrowth warning system
    Swap grew by 2.00 GB
    Swap went from 512 MB to 2.50 GB in 30 min. The computer is short on memory.
16:32:50 highTemperature warning cpu
    CPU temperature has stayed high
    96 °C on average for 3 min. Fans: 4200 rpm, 4350 rpm.
16:36:00 thermalPressure warning thermal
    The system reports serious thermal pressure
    The system has been at serious or worse for 1 min; the system may be reducing performance to cool down.
18:12:00 batteryDrain warning battery
    Battery is draining at 30% per hour
    Down 6% in 12 min.
)";

// Nobody looks before 08:00 and after 18:00: then every sixth tick is judged, and what ends at 20:00 is seen at 20:02.
constexpr std::string_view expectedHealth = R"(00:05:00 cpu - > good (Normal)
00:05:00 memory - > good (Normal)
00:05:00 storage - > good (Healthy)
00:05:00 battery - > good (Healthy)
00:05:00 thermal - > good (Normal)
00:05:00 background - > good (Normal)
09:01:00 background good > elevated (Elevated)
09:05:00 cpu good > elevated (Elevated)
09:09:00 background elevated > good (Normal)
09:10:00 cpu elevated > good (Normal)
12:01:00 background good > elevated (Elevated)
12:41:00 background elevated > good (Normal)
14:01:00 storage good > high (Low Space)
15:10:00 memory good > elevated (Elevated)
15:20:00 memory elevated > high (Critical)
15:30:00 memory high > elevated (Elevated)
15:40:00 memory elevated > good (Normal)
16:31:00 thermal good > elevated (Elevated)
16:35:00 thermal elevated > high (High)
16:45:00 thermal high > good (Normal)
20:02:00 storage high > good (Healthy)
)";

constexpr std::string_view expectedInsights = R"(00:05:00 +mem-share
09:30:00 +idle-servers
10:00:00 +long-server
14:01:00 +disk-low
15:11:00 +pressure
15:15:00 +swap
15:40:00 -pressure
16:35:00 +thermal
16:45:00 -thermal
17:00:00 -idle-servers
17:00:00 -long-server
19:02:00 -swap
20:02:00 -disk-low
)";

constexpr std::string_view expectedAtWorst =
    R"(warning pressure: Your computer has been under elevated memory pressure for 29 min
    Memory pressure 80%, 512 MB compressed, 4.12 GB swap.
warning disk-low: System has 20 GB free
    4% of 500 GB. The system needs free space for swap, updates and caches.
notice mem-share: Atlas is responsible for 60% of application memory
    6.00 GB across 1 processes, out of 9.93 GB used by all apps.
notice swap: The system is using 4.12 GB of swap
    Swap means memory contents were written to disk because RAM ran short. Swap-outs right now: 546.
notice idle-servers: 1 dev server looks idle
    Together they hold 180 MB and ports 5173, 5174.
info long-server: A development server has been running for 1d 5h
    Web server on port 5173, 5174, nobody connected, 180 MB.
)";

/// 14:00 to 16:00: in it an editor is quit at 15:00, and a large application comes at 15:10 that fills the memory.
void expectSession(DayPlayer& day) {
    ASSERT_TRUE(day.state().lastSessionSummary);
    const SessionSummary& summary = *day.state().lastSessionSummary;
    EXPECT_EQ(summary.name, "Afternoon");
    EXPECT_EQ(summary.start, Date{at(14, 0)});
    EXPECT_EQ(summary.end, Date{at(16, 0)});
    EXPECT_EQ(summary.samples, 120);
    EXPECT_NEAR(summary.cpu.average, 0.06 + 0.15 * 50 / 120, 1e-12);
    EXPECT_NEAR(summary.cpu.peak, 0.21, 1e-12);
    EXPECT_EQ(summary.memoryUsed, (SessionSummary::Stat{(69 * 6 + 51 * 12) * GiB / 120, 12 * GiB}));
    EXPECT_EQ(summary.memoryPressurePeak, "Critical");
    EXPECT_EQ(summary.swapPeak, 4352 * MiB);
    EXPECT_EQ(summary.gpu, std::nullopt);
    EXPECT_EQ(summary.cpuTemperature, (SessionSummary::Stat{60, 60}));
    EXPECT_EQ(summary.systemPower, (SessionSummary::Stat{10, 10}));
    EXPECT_NEAR(summary.diskRead, 360e6, 1);
    EXPECT_NEAR(summary.diskWrite, 720e6, 1);
    EXPECT_EQ(summary.batteryStart, 100);
    EXPECT_EQ(summary.batteryEnd, 100);
    EXPECT_EQ(summary.launchedApps, std::vector<std::string>{"Atlas"});
    EXPECT_EQ(summary.quitApps, std::vector<std::string>{"Quill"});

    std::string apps;
    for (const SessionSummary::AppLine& app : summary.apps)
        apps += fmt::format("{}: {:.3f} cores, {:.3f} s, {} MiB, {:+} MiB, {} of 120\n", app.name, app.avgCPU,
                            app.cpuSeconds, app.peakMemory / MiB, app.memoryChange / MiB, app.presentFraction * 120);
    EXPECT_EQ(apps, "Atlas: 0.250 cores, 1800.000 s, 6144 MiB, +0 MiB, 51 of 120\n"
                    "Lantern: 0.100 cores, 720.000 s, 3848 MiB, +0 MiB, 120 of 120\n"
                    "Quill: 0.000 cores, 0.000 s, 600 MiB, +0 MiB, 59 of 120\n"
                    "node: 0.000 cores, 0.000 s, 180 MiB, +0 MiB, 120 of 120\n");
    std::string processes;
    for (const SessionSummary::ProcessLine& process : summary.processes)
        processes += fmt::format("{} {} of {}: {:.3f} s, {} MiB\n", process.pid, process.name, process.app,
                                 process.cpuSeconds, process.peakMemory / MiB);
    EXPECT_EQ(processes, "2200 atlas of Atlas: 1800.000 s, 6144 MiB\n"
                         "2000 lantern of Lantern: 720.000 s, 3848 MiB\n"
                         "2100 quill of Quill: 0.000 s, 600 MiB\n"
                         "4100 node of node: 0.000 s, 180 MiB\n");

    const auto stored =
        day.answer<std::vector<StoredSession>>([](HistoryStore& store, auto got) { store.sessions(std::move(got)); });
    ASSERT_EQ(stored.size(), 1U);
    EXPECT_EQ(stored[0].start, Date{at(14, 0)});
    EXPECT_EQ(stored[0].end, Date{at(16, 0)});
    EXPECT_EQ(readSessionSummary(stored[0].summaryJSON.value_or("")), summary);
}

/// All but the first minute, which holds no interval, and the last, which is not over.
void expectMinutes(DayPlayer& day) {
    const std::vector<SystemRow> rows = day.systemRows();
    EXPECT_EQ(rows.size(), 120U + 1079U);
    EXPECT_EQ(rows.front().date(), Date{at(0, 1)});
    EXPECT_EQ(rows.back().date(), Date{at(23, 58)});
    EXPECT_TRUE(std::ranges::none_of(rows, [](const SystemRow& row) {
        return row.date() > Date{at(2, 0)} && row.date() < Date{at(6, 0)};
    })) << "of the time asleep";
    const auto row = [&](double time) { return *std::ranges::find(rows, Date{time}, &SystemRow::date); };
    EXPECT_NEAR(row(at(6, 0)).diskWrite, 25'000, 1e-6); // a minute's work over four hours, of which one minute counts
    EXPECT_EQ(row(at(16, 29)).samples, 1);
    EXPECT_EQ(row(at(16, 30)).samples, 12);
    EXPECT_NEAR(*row(at(16, 30)).cpuTemp, (60 + 11 * 97) / 12.0, 1e-9);
    EXPECT_EQ(row(at(16, 40)).samples, 1);
}

/// What was fed less what the file does not hold: most of the minute before the wake, and the last minute.
void expectTotals(DayPlayer& day) {
    day.model->refreshTotals();
    day.settle();
    const AppState& state = day.state();
    EXPECT_NEAR(state.launchTotals.diskRead, 3.6e9, 1);
    EXPECT_NEAR(state.launchTotals.diskWrite, 7.2e9 + 57.6e9, 10);
    EXPECT_EQ(state.launchTotals.energyWh, 0);
    EXPECT_NEAR(state.todayTotals.diskRead, 3.6e9 - (3e6 - 12'500) - 3e6, 1);
    EXPECT_NEAR(state.todayTotals.diskWrite, 64.8e9 - (6e6 - 25'000) - 6e6, 10);
    EXPECT_NEAR(state.todayTotals.energyWh, (1079 * 10 + 120 * 15) / 60.0, 1e-6);
    EXPECT_EQ(state.weekTotals, state.todayTotals);
    EXPECT_EQ(state.monthTotals, state.todayTotals);
    // The compiler's 8 minutes, the indexer's 40, and the 169 of the large application.
    EXPECT_NEAR(state.cpuAverageToday.value_or(0), 0.06 + (8 * 0.75 + 40 * 0.375 + 169 * 0.15) / 1199, 1e-9);
    EXPECT_EQ(state.typicalDrainPerHour, std::nullopt); // 59 minutes in which the charge fell are too few
}

/// As they are kept from the next day on.
void expectQuarters(DayPlayer& day) {
    day.model->history().maintain(Date{at(48, 0)});
    const std::vector<SystemRow> rows = day.systemRows();
    EXPECT_EQ(rows.size(), 9U + 72U);
    const auto quarter = [&](int hours, int minutes) {
        const auto found = std::ranges::find(rows, Date{at(hours, minutes)}, &SystemRow::date);
        return found == rows.end() ? SystemRow{} : *found;
    };
    EXPECT_EQ(quarter(2, 0).samples, 1);
    EXPECT_NEAR(quarter(6, 0).diskWrite, 25'000 + 14 * 6e6, 1);

    const SystemRow noon = quarter(12, 0);
    EXPECT_NEAR(noon.cpu, (0.06 + 14 * 0.435) / 15, 1e-12);
    EXPECT_NEAR(noon.cpuMax, 0.435, 1e-12);
    EXPECT_NEAR(noon.cpuSystem, 0.02, 1e-12);
    EXPECT_EQ(noon.samples, 15);
    const auto indexer = day.answer<std::vector<AppRow>>(
        [](HistoryStore& store, auto got) { store.appRows("exe:indexer", Date{at(12, 0)}, std::move(got)); });
    ASSERT_FALSE(indexer.empty());
    EXPECT_NEAR(indexer.front().cpu, (0.02 + 14 * 1.5) / 15, 1e-12);
    EXPECT_EQ(indexer.front().memMax, 90 * MiB);

    EXPECT_NEAR(quarter(13, 0).diskWrite, 12 * 4.8e9 + 15 * 6e6, 10);
    EXPECT_NEAR(quarter(13, 0).diskRead, 15 * 3e6, 1);

    const SystemRow crowded = quarter(15, 15);
    EXPECT_NEAR(crowded.pressure, (5 * 80 + 10 * 92) / 15.0, 1e-9);
    EXPECT_EQ(crowded.pressureLevelMax, 4);
    EXPECT_NEAR(crowded.swapUsed, (512 + 128 * 12) * MiB, 1);
    EXPECT_EQ(crowded.memUsed, 12 * GiB);

    const SystemRow hot = quarter(16, 30);
    EXPECT_NEAR(*hot.cpuTemp, ((60 + 11 * 97) / 12.0 + 14 * 97) / 15, 1e-9);
    EXPECT_EQ(hot.cpuTempMax, 97);
    EXPECT_EQ(hot.samples, 10 * 12 + 5);

    EXPECT_NEAR(*quarter(18, 0).batteryPct, (2 * (100 + 99 + 98 + 97 + 96 + 95 + 94) + 93) / 15.0, 1e-9);
    EXPECT_EQ(quarter(18, 0).powerW, 15);
}

} // namespace

TEST(TroubledDay, isToldJudgedAndKept) {
    const TimeZone zone("UTC");
    DayPlayer day(fixture("days/troubled.jsonl"));
    Seen seen;
    std::string atWorst;
    day.play([&](AppModel& model) {
        const double now = model.state().snapshot->timestamp.seconds;
        seen.look(model.state());
        if (now == at(8, 0))
            model.setWindowVisible(true);
        if (now == at(14, 0))
            model.startSession("Afternoon");
        if (now == at(15, 39))
            atWorst = told(model.state().insights);
        if (now == at(16, 0))
            model.stopSession();
        if (now == at(18, 0))
            model.setWindowVisible(false);
    });
    EXPECT_EQ(day.playback->problem(), std::nullopt);
    EXPECT_EQ(day.state().tick, 1311);
    EXPECT_EQ(timeOf(day.state().snapshot->timestamp), "23:59:00");

    EXPECT_EQ(told(day.state().alerts), expectedAlerts);
    const auto stored =
        day.answer<std::vector<StoredAlert>>([](HistoryStore& store, auto got) { store.alerts(1000, std::move(got)); });
    EXPECT_EQ(stored.size(), day.state().alerts.size());
    EXPECT_EQ(day.notified.size(), 9U); // all but those about an unusual load, an idle server and swap
    EXPECT_EQ(seen.healthChanges, expectedHealth);
    EXPECT_EQ(seen.insightChanges, expectedInsights);
    EXPECT_EQ(atWorst, expectedAtWorst);
    expectSession(day);
    expectMinutes(day);
    expectTotals(day);
    expectQuarters(day);
}

} // namespace ostrivane
