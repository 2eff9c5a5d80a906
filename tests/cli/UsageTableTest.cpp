#include "cli/UsageTable.hpp"

#include <gtest/gtest.h>

namespace ostrivane::cli {
namespace {

SystemSnapshot machine() {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{0});
    snapshot.interval = 1;
    const auto add = [&](std::int32_t pid, const char* name, double cpu, std::uint64_t memory) -> ProcessSnapshot& {
        ProcessSnapshot process;
        process.pid = pid;
        process.name = name;
        process.user = "ada";
        process.cpu = cpu;
        process.memory = memory;
        return snapshot.processes.emplace_back(process);
    };
    add(1, "beta", 0.5, 300);
    add(2, "Alpha", 0.5, 100);
    add(3, "gamma", 2, 200).commandLine = "gamma --serve SHOP";
    add(4, "hidden", 0, 0).isRestricted = true;
    snapshot.processes[0].netInRate = 0;
    return snapshot;
}

std::vector<std::string> names(const std::vector<UsageRow>& rows) {
    std::vector<std::string> found;
    for (const UsageRow& row : rows)
        found.push_back(row.name);
    return found;
}

TEST(UsageTable, ordersFiltersAndLimits) {
    using Names = std::vector<std::string>;
    const SystemSnapshot snapshot = machine();
    EXPECT_EQ(names(usageRows(snapshot, UsageSubject::processes, {})), (Names{"gamma", "Alpha", "beta", "hidden"}))
        << "equal loads by name, what is not known last";
    EXPECT_EQ(names(usageRows(snapshot, UsageSubject::processes, {.sort = UsageSort::memory, .limit = 2})),
              (Names{"beta", "gamma"}));
    EXPECT_EQ(names(usageRows(snapshot, UsageSubject::processes, {.sort = UsageSort::name, .limit = 2})),
              (Names{"Alpha", "beta"}));
    EXPECT_EQ(names(usageRows(snapshot, UsageSubject::processes, {.sort = UsageSort::net, .limit = 1})),
              (Names{"beta"}))
        << "0 is known, the others are not";
    EXPECT_EQ(names(usageRows(snapshot, UsageSubject::processes, {.filter = "shop"})), (Names{"gamma"}));
    EXPECT_EQ(names(usageRows(snapshot, UsageSubject::processes, {.filter = "2"})), (Names{"Alpha"})) << "a pid";
    EXPECT_EQ(names(usageRows(snapshot, UsageSubject::processes, {.filter = "nothing"})), Names());
}

TEST(UsageTable, showsADashForWhatTheSystemHides) {
    const UsageRow hidden = usageRow(machine().processes[3], 3);
    const std::string line = plainText(usageLine(hidden, UsageSort::cpu, 120));
    EXPECT_TRUE(line.starts_with("hidden * ")) << line;
    EXPECT_EQ(line.find("0 B"), std::string::npos) << line;
    EXPECT_NE(line.find("—"), std::string::npos) << line;
    ProcessSnapshot hostile;
    hostile.name = "a\x1b[2J" + std::string(300, 'w');
    for (const int width : {1, 10, 30, 60, 80, 200}) {
        EXPECT_LE(columns(usageLine(usageRow(hostile, 0), UsageSort::cpu, width)), width);
        EXPECT_LE(columns(usageHeading(UsageSubject::processes, UsageSort::cpu, width)), width);
        EXPECT_EQ(plainText(usageLine(usageRow(hostile, 0), UsageSort::cpu, width)).find('\x1b'), std::string::npos);
    }
    EXPECT_EQ(columns(usageHeading(UsageSubject::processes, UsageSort::cpu, 100)),
              columns(usageLine(hidden, UsageSort::cpu, 100)))
        << "columns align";
}

TEST(UsageTable, hidesTheSumsOfNothingButHiddenFigures) {
    SystemSnapshot snapshot = machine();
    snapshot.perProcessNetworkAvailable = true;
    snapshot.processes[0].appKey = snapshot.processes[3].appKey = "mixed";
    snapshot.processes[1].appKey = snapshot.processes[2].appKey = "hidden";
    for (const std::size_t index : {std::size_t{1}, std::size_t{2}})
        snapshot.processes[index].isRestricted = true;
    for (const char* key : {"mixed", "hidden"}) {
        ApplicationSnapshot& app = snapshot.applications.emplace_back();
        app.key = app.name = key;
        app.netInRate = app.netOutRate = app.gpu = 0; // as the sums have it where a sampler is there
        app.hasRestricted = true;
    }
    const auto row = [&](std::size_t index) {
        return usageRows(snapshot, UsageSubject::applications, {.sort = UsageSort::name}).at(index);
    };
    for (const auto& figure : {row(0).cpu, row(0).diskRead, row(0).netIn, row(0).gpu})
        EXPECT_EQ(figure, std::nullopt);
    EXPECT_EQ(row(0).memory, std::nullopt);
    EXPECT_EQ(row(1).cpu, 0);
    EXPECT_EQ(row(1).diskWrite, 0);
    EXPECT_EQ(row(1).netIn, 0);
    snapshot.processes[1].memoryIsRSS = true;
    EXPECT_EQ(row(0).cpu, 0) << "the system tells of one";
    EXPECT_EQ(row(0).diskRead, std::nullopt) << "but not this";
}

TEST(UsageTable, tellsNoRatesOnTheFirstTick) {
    SystemSnapshot snapshot = machine();
    snapshot.interval = 0;
    const UsageRow row = usageRows(snapshot, UsageSubject::processes, {.sort = UsageSort::memory}).front();
    EXPECT_EQ(row.cpu, std::nullopt);
    EXPECT_EQ(row.diskRead, std::nullopt);
    EXPECT_EQ(row.memory, 300u);
}

TEST(UsageTable, keepsTheOrderOfEqualRowsFromTickToTick) {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{0});
    for (const int pid : {10, 9, 200})
        snapshot.processes.emplace_back().pid = pid;
    const auto pids = [&] {
        std::vector<std::string> found;
        for (const UsageRow& row : usageRows(snapshot, UsageSubject::processes, {}))
            found.push_back(row.idText);
        return found;
    };
    EXPECT_EQ(pids(), (std::vector<std::string>{"9", "10", "200"}));
    std::swap(snapshot.processes[0], snapshot.processes[2]);
    EXPECT_EQ(pids(), (std::vector<std::string>{"9", "10", "200"}));
}

TEST(UsageTable, keepsTheColumnOfTheOrderInANarrowWindow) {
    const auto heading = [](UsageSort sort, int width) {
        return plainText(usageHeading(UsageSubject::applications, sort, width));
    };
    for (const char* title : {"CPU▾", "MEMORY", "READ", "WRITE", "IN", "OUT", "GPU", "POWER"})
        EXPECT_NE(heading(UsageSort::cpu, 110).find(title), std::string::npos) << title;
    for (const char* title : {"CPU", "MEMORY", "DISK", "NET▾", "GPU", "POWER"})
        EXPECT_NE(heading(UsageSort::net, 80).find(title), std::string::npos) << title;
    EXPECT_NE(heading(UsageSort::power, 45).find("CPU   POWER▾"), std::string::npos);
    EXPECT_EQ(heading(UsageSort::power, 45).find("MEMORY"), std::string::npos);
    const UsageRow row{.name = "x", .idText = "1", .diskRead = 1000, .diskWrite = 2000, .powerW = 3};
    EXPECT_NE(plainText(usageLine(row, UsageSort::power, 45)).find("—   3.00 W"), std::string::npos);
    EXPECT_NE(plainText(usageLine(row, UsageSort::disk, 80)).find("3.0 KB/s"), std::string::npos) << "both together";
}

} // namespace
} // namespace ostrivane::cli
