#include "app/pages/ProcessesText.hpp"
#include "app/pages/ProcessTable.hpp"
#include "app/widgets/Strings.hpp"
#include "tests/app/pages/PageHarness.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace ostrivane {
namespace {

SystemSnapshot smallMachine() {
    SystemSnapshot snapshot;
    snapshot.timestamp = Date{1'000'000};
    snapshot.interval = 2;
    ProcessSnapshot shell;
    shell.pid = 4133;
    shell.name = "zsh";
    shell.uid = 1000;
    shell.commandLine = "-zsh";
    ProcessSnapshot server = shell;
    server.pid = 48211;
    server.ppid = 4133;
    server.name = "node";
    server.state = "Running";
    server.threads = 22;
    server.startTime = Date{1'000'000 - 3 * 86400 - 7 * 3600};
    server.commandLine = "node vite dev";
    server.cwd = "/home/ada/code/storefront";
    server.cpu = 0.96;
    server.memory = std::uint64_t{486} << 20;
    server.diskReadRate = 400'000;
    server.netInRate = 220'000;
    server.netOutRate = 30'000;
    server.powerW = 1.48;
    server.isDevProcess = true;
    server.devKind = "Vite";
    server.appKey = "exe:/usr/bin/node";
    ProcessSnapshot kernel;
    kernel.pid = 1;
    kernel.name = "Launcher";
    kernel.uid = 0;
    kernel.isRestricted = true;
    snapshot.processes = {shell, server, kernel};
    return snapshot;
}

TEST(ProcessesText, SaysWhoTheSelectedProcessIs) {
    const SystemSnapshot snapshot = smallMachine();
    const ProcessPanel panel = presentProcess(snapshot.processes[1], snapshot, "/home/ada");
    EXPECT_EQ(panel.name, QStringLiteral("node"));
    EXPECT_EQ(panel.kind, QStringLiteral("Vite"));
    EXPECT_EQ(panel.facts, QStringLiteral("PID 48211 · parent zsh (4133) · Running · 22 threads · up 3d 7h"));
    EXPECT_EQ(panel.commandLine, QStringLiteral("node vite dev"));
    EXPECT_EQ(panel.activity, QStringLiteral("in ~/code/storefront · reads 400 KB/s, writes 0 B/s · receives 220 KB/s, "
                                             "sends 30.0 KB/s · 1.48 W"));

    // What the system hides is left out, not zero.
    const ProcessPanel hidden = presentProcess(snapshot.processes[2], snapshot, "/home/ada");
    EXPECT_EQ(hidden.facts, QStringLiteral("PID 1"));
    EXPECT_EQ(hidden.commandLine, QString());
    EXPECT_EQ(hidden.activity, QString());

    const ProcessPanel ended = presentEnded(snapshot.processes[1]);
    EXPECT_EQ(ended.facts, QStringLiteral("PID 48211 · Ended"));
    EXPECT_EQ(ended.activity, QString()) << "no figures of what is no more";
}

TEST(ProcessesText, ShortensOnlyTheUsersOwnFolder) {
    SystemSnapshot snapshot = smallMachine();
    ProcessSnapshot& process = snapshot.processes[0];
    const auto place = [&](const char* folder, const char* home) {
        process.cwd = folder;
        return presentProcess(process, snapshot, home).activity.section(QStringLiteral(" · "), 0, 0).toStdString();
    };
    EXPECT_EQ(place("/home/ada", "/home/ada"), "in ~");
    EXPECT_EQ(place("/home/adam/x", "/home/ada"), "in /home/adam/x");
    EXPECT_EQ(place("/srv", "/"), "in /srv");
    EXPECT_EQ(place("/srv", ""), "in /srv");
}

TEST(ProcessesText, CountsInTheFoot) {
    SystemSnapshot snapshot;
    EXPECT_EQ(runningText(snapshot), QString()) << "no process was seen: that is no count";
    EXPECT_EQ(restrictedText(snapshot), QString());
    snapshot.processes.emplace_back();
    snapshot.processCount = 612;
    EXPECT_EQ(runningText(snapshot), QStringLiteral("612 running"));
    EXPECT_EQ(restrictedText(snapshot), QString());
    snapshot.restrictedProcessCount = 214;
    EXPECT_EQ(restrictedText(snapshot), QStringLiteral("214 owned by other users (limited metrics)"));
    EXPECT_EQ(processesNote(), QStringLiteral("Select a process to reveal or stop it. * = resident size (footprint "
                                              "isn't available for processes owned by other users)."));
}

class ProcessCells : public ::testing::Test {
protected:
    explicit ProcessCells(SystemSnapshot taken = smallMachine()) : snapshot(std::move(taken)) {
        heat = ProcessHeat::of(rows);
    }
    const TableColumn<ProcessRow>& column(std::string_view id) const {
        return *std::ranges::find(columns, id, &TableColumn<ProcessRow>::id);
    }

    SystemSnapshot snapshot;
    std::vector<ProcessRow> rows = processRows(snapshot);
    ProcessHeat heat;
    std::vector<TableColumn<ProcessRow>> columns = processColumns(heat);
};

TEST_F(ProcessCells, ShowFiguresAsTheyAreAndNoneThatIsHidden) {
    std::vector<QString> titles;
    for (const TableColumn<ProcessRow>& one : columns)
        titles.push_back(one.title);
    EXPECT_EQ(titles, (std::vector<QString>{QStringLiteral("Name"), QStringLiteral("PID"), QStringLiteral("CPU"),
                                            QStringLiteral("Memory"), QStringLiteral("User"), QStringLiteral("App")}));
    EXPECT_EQ(column("cpu").text(rows[1]), QStringLiteral("96%"));
    EXPECT_EQ(column("memory").text(rows[1]), QStringLiteral("486 MB"));
    EXPECT_EQ(column("app").text(rows[1]), QStringLiteral("node")) << "by its key where no application is listed";
    for (const char* id : {"cpu", "memory"}) {
        EXPECT_EQ(column(id).text(rows[2]), QStringLiteral("—"));
        EXPECT_EQ(column(id).sortKey(rows[2]).index(), 0U) << "the least, not zero";
        EXPECT_EQ(column(id).heat(rows[2]), 0);
    }
    ProcessSnapshot sampled = snapshot.processes[2];
    sampled.memoryIsRSS = true;
    sampled.memory = 1 << 20;
    const ProcessRow row{.process = &sampled};
    EXPECT_EQ(column("memory").text(row) + column("memory").suffix(row), QStringLiteral("1.00 MB*"));
    EXPECT_EQ(column("memory").suffix(rows[1]), QString());
    EXPECT_EQ(column("user").tone(rows[2]), Tone::text3);
    EXPECT_EQ(column("user").tone(rows[1]), Tone::text);
}

TEST_F(ProcessCells, AreHotInProportionToTheLargest) {
    EXPECT_DOUBLE_EQ(column("cpu").heat(rows[1]), 0.96) << "of one core, while nobody uses more";
    EXPECT_DOUBLE_EQ(column("memory").heat(rows[1]), 1);
    snapshot.processes[0].cpu = 4;
    snapshot.processes[0].memory = snapshot.processes[1].memory * 2;
    heat = ProcessHeat::of(rows);
    EXPECT_DOUBLE_EQ(column("cpu").heat(rows[1]), 0.24);
    EXPECT_DOUBLE_EQ(column("memory").heat(rows[1]), 0.5);
}

TEST_F(ProcessCells, PassTheFilterByNameAndByTheBeginningOfThePid) {
    const auto passing = [this](ProcessScope scope, const char* wanted) {
        std::vector<std::int32_t> pids;
        for (const ProcessRow& row : rows)
            if (isListed(row, scope, text(wanted)))
                pids.push_back(row.process->pid);
        return pids;
    };
    using Pids = std::vector<std::int32_t>;
    EXPECT_EQ(passing(ProcessScope::all, ""), (Pids{4133, 48211, 1}));
    EXPECT_EQ(passing(ProcessScope::all, "NOD"), (Pids{48211}));
    EXPECT_EQ(passing(ProcessScope::all, "4"), (Pids{4133, 48211}));
    EXPECT_EQ(passing(ProcessScope::all, "133"), Pids{});
    EXPECT_EQ(passing(ProcessScope::mine, ""), (Pids{4133, 48211}));
    EXPECT_EQ(passing(ProcessScope::developer, ""), (Pids{48211}));
}

TEST(ProcessRows, OfARecordedMachineKnowWhoseTheyAre) {
    const SystemSnapshot& snapshot = *recordedSnapshots(developer).back();
    EXPECT_EQ(ownUser(snapshot), 1000U);
    const std::vector<ProcessRow> rows = processRows(snapshot);
    ASSERT_EQ(rows.size(), snapshot.processes.size());
    bool hasForeign = false;
    for (const ProcessRow& row : rows) {
        EXPECT_EQ(row.isForeign, row.process->uid != 1000) << row.process->name;
        EXPECT_TRUE(!row.app || row.app->key == row.process->appKey);
        hasForeign = hasForeign || row.isForeign;
    }
    EXPECT_TRUE(hasForeign);
}

class DamagedProcessCells : public ProcessCells {
protected:
    DamagedProcessCells() : ProcessCells(damagedSnapshot()) {}
};

TEST_F(DamagedProcessCells, AlwaysHaveAText) {
    for (const ProcessRow& row : rows) {
        for (const TableColumn<ProcessRow>& one : columns) {
            if (one.isNumeric) {
                EXPECT_FALSE(one.text(row).isEmpty()) << one.id;
            }
            if (one.heat) {
                EXPECT_GE(one.heat(row), 0) << one.id;
            }
        }
        EXPECT_FALSE(presentProcess(*row.process, snapshot, "/home/ada").facts.contains(QStringLiteral("parent")))
            << "nobody is the parent of oneself";
    }
}

} // namespace
} // namespace ostrivane
