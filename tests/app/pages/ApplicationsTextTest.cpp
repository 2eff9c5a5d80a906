#include "app/pages/ApplicationsText.hpp"

#include "app/widgets/Strings.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace ostrivane {

namespace {

ApplicationSnapshot app(const std::string& key, const std::string& name, std::vector<std::int32_t> pids) {
    ApplicationSnapshot made;
    made.key = key;
    made.name = name;
    made.pids = std::move(pids);
    return made;
}

ProcessSnapshot process(std::int32_t pid, const std::string& key, bool isRestricted, bool memoryIsRSS = false) {
    ProcessSnapshot made;
    made.pid = pid;
    made.appKey = key;
    made.isRestricted = isRestricted;
    made.memoryIsRSS = memoryIsRSS;
    made.path = "/bin/" + std::to_string(pid);
    return made;
}

SystemSnapshot machine() {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{1'700'000'000});
    snapshot.applications = {app("/Applications/Editor.app", "Code Éditeur", {10, 11}), app("exe:node", "node", {20}),
                             app("system", "System", {1, 2, 3})};
    snapshot.applications[2].isSystem = true;
    return snapshot;
}

std::vector<std::string> names(const std::vector<ApplicationRow>& rows) {
    std::vector<std::string> all;
    for (const ApplicationRow& row : rows)
        all.push_back(row.app->name);
    return all;
}

/// The words of one application in the column of a sort.
std::string cell(const ApplicationRow& row, ApplicationSort sort) {
    for (const auto& column : applicationColumns(PlatformWords::Linux))
        if (column.id == rawValue(sort))
            return column.text(row).toStdString();
    return "no such column";
}

using Names = std::vector<std::string>;

} // namespace

TEST(ApplicationRows, areWhatFilterAndSwitchLeave) {
    const SystemSnapshot snapshot = machine();
    EXPECT_EQ(names(applicationRows(snapshot, {}, true)), (Names{"Code Éditeur", "node", "System"}));
    EXPECT_EQ(names(applicationRows(snapshot, {}, false)), (Names{"Code Éditeur", "node"}));
    EXPECT_EQ(names(applicationRows(snapshot, QStringLiteral(" éDIT "), true)), (Names{"Code Éditeur"}));
    EXPECT_EQ(names(applicationRows(snapshot, QStringLiteral("system"), false)), Names{});
    EXPECT_EQ(names(applicationRows(snapshot, QStringLiteral("  "), false)).size(), 2U);
}

TEST(ApplicationRows, areCountedWithTheirProcesses) {
    SystemSnapshot snapshot = machine();
    EXPECT_EQ(applicationCounts(applicationRows(snapshot, {}, true)), QStringLiteral("3 applications · 6 processes"));
    EXPECT_EQ(applicationCounts(applicationRows(snapshot, QStringLiteral("node"), true)),
              QStringLiteral("1 application · 1 process"));
    EXPECT_EQ(applicationCounts({}), QStringLiteral("0 applications · 0 processes"));
}

TEST(ApplicationColumns, shadeFullyForOneCoreAndForTheLargestMemory) {
    SystemSnapshot snapshot = machine();
    snapshot.applications[0].cpu = std::numeric_limits<double>::infinity();
    snapshot.applications[1].cpu = 0.25;
    snapshot.applications[2].cpu = 6;
    snapshot.applications[0].memory = 100;
    snapshot.applications[1].memory = 25;
    const auto heats = [&](ApplicationSort sort) {
        std::vector<double> all;
        for (const auto& column : applicationColumns(PlatformWords::Linux))
            if (column.id == rawValue(sort))
                for (const ApplicationRow& row : applicationRows(snapshot, {}, true))
                    all.push_back(column.heat(row));
        return all;
    };
    EXPECT_EQ(heats(ApplicationSort::cpu), (std::vector<double>{0, 0.25, 1}));
    EXPECT_EQ(heats(ApplicationSort::memory), (std::vector<double>{1, 0.25, 0}));
    snapshot.applications.erase(snapshot.applications.begin()); // nothing holds anything: 0 of 0
    snapshot.applications[0].memory = 0;
    EXPECT_EQ(heats(ApplicationSort::memory), (std::vector<double>{0, 0}));
}

TEST(ApplicationRows, showNoSumsOfWhatTheSystemHides) {
    SystemSnapshot snapshot = machine();
    snapshot.processes = {process(1, "system", true),
                          process(2, "system", true),
                          process(3, "system", true),
                          process(20, "exe:node", true, true), // a tool of the system told of it
                          process(10, "/Applications/Editor.app", true),
                          process(11, "/Applications/Editor.app", false)};
    const std::vector<ApplicationRow> rows = applicationRows(snapshot, {}, true);
    EXPECT_EQ(cell(rows[2], ApplicationSort::cpu), "—");
    EXPECT_EQ(cell(rows[2], ApplicationSort::memory), "—");
    EXPECT_EQ(cell(rows[2], ApplicationSort::disk), "Unavailable");
    EXPECT_EQ(cell(rows[1], ApplicationSort::cpu), "0.0%");
    EXPECT_EQ(cell(rows[1], ApplicationSort::disk), "Unavailable");
    EXPECT_EQ(cell(rows[0], ApplicationSort::cpu), "0.0%");
    EXPECT_EQ(cell(rows[0], ApplicationSort::disk), "0 B/s");
    EXPECT_TRUE(hiddenFigures(snapshot.applications[2], snapshot.processes).use);
    EXPECT_FALSE(hiddenFigures(snapshot.applications[0], snapshot.processes).disk);

    snapshot.processes.pop_back(); // one that is not listed may have told something
    EXPECT_FALSE(hiddenFigures(snapshot.applications[0], snapshot.processes).use);
}

TEST(ApplicationColumns, standInOrderAndGiveTheHighestFirstButForNames) {
    std::vector<std::string> titles;
    std::size_t sortable = 0;
    for (const auto& column : applicationColumns(PlatformWords::Linux)) {
        titles.push_back(column.title.toStdString());
        const auto sort = fromRawValue<ApplicationSort>(column.id);
        ASSERT_TRUE(sort) << column.id;
        EXPECT_EQ(column.sortsDescendingFirst, sort != ApplicationSort::name) << column.id;
        sortable += column.sortKey ? 1 : 0;
    }
    EXPECT_EQ(titles, (Names{"Application", "CPU", "Memory", "Energy", "Disk W", "Network"}));
    EXPECT_EQ(sortable, rawTexts(EnumTag<ApplicationSort>{}).size());
}

TEST(ApplicationColumns, sayWhatIsAbsent) {
    SystemSnapshot snapshot = machine();
    ApplicationSnapshot& told = snapshot.applications[0];
    told.powerW = 0;
    told.netOutRate = 1500; // of one direction alone
    const std::vector<ApplicationRow> rows = applicationRows(snapshot, {}, true);
    EXPECT_EQ(cell(rows[0], ApplicationSort::energy), "0 mW");
    EXPECT_EQ(cell(rows[0], ApplicationSort::network), "1.5 KB/s");
    EXPECT_EQ(cell(rows[1], ApplicationSort::energy), "Unavailable");
    EXPECT_EQ(cell(rows[1], ApplicationSort::network), "Unavailable");
    for (const auto& column : applicationColumns(PlatformWords::Linux))
        if (column.id == "network" || column.id == "energy") {
            EXPECT_TRUE(std::holds_alternative<std::monostate>(column.sortKey(rows[1]))) << column.id;
        }
}

TEST(ApplicationsText, speaksOfThePlatform) {
    EXPECT_EQ(systemSwitchText(PlatformWords::macOS), QStringLiteral("macOS & other users"));
    EXPECT_EQ(systemSwitchText(PlatformWords::Linux), QStringLiteral("System & other users"));
    SystemSnapshot snapshot = machine();
    EXPECT_EQ(missingTrafficText(snapshot, true, PlatformWords::macOS),
              QStringLiteral("Network use by application is unavailable on this Mac."));
    EXPECT_EQ(missingTrafficText(snapshot, false, PlatformWords::macOS),
              QStringLiteral("Network use by application is switched off in Settings."));
    snapshot.perProcessNetworkAvailable = true;
    EXPECT_EQ(missingTrafficText(snapshot, true, PlatformWords::macOS), QString());
}

TEST(RevealPath, isTheBundleElseTheMainProgram) {
    SystemSnapshot snapshot = machine();
    snapshot.processes = {process(1, "system", false), process(20, "exe:node", false)};
    ApplicationSnapshot& editor = snapshot.applications[0];
    EXPECT_EQ(revealPath(editor, snapshot.processes), std::nullopt);
    editor.bundlePath = "/Applications/Editor.app";
    EXPECT_EQ(revealPath(editor, snapshot.processes), "/Applications/Editor.app");
    ApplicationSnapshot& node = snapshot.applications[1];
    node.mainPID = 20;
    EXPECT_EQ(revealPath(node, snapshot.processes), "/bin/20");
    node.mainPID = 21; // gone meanwhile
    EXPECT_EQ(revealPath(node, snapshot.processes), std::nullopt);
    snapshot.applications[2].mainPID = 1; // the first process of the machine is not what is meant
    EXPECT_EQ(revealPath(snapshot.applications[2], snapshot.processes), std::nullopt);
}

} // namespace ostrivane
