#include "cli/UsageTable.hpp"

#include <gtest/gtest.h>

namespace ostrivane::cli {
namespace {

SystemSnapshot machine() {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{0});
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
    EXPECT_EQ(names(processRows(snapshot, {})), (Names{"gamma", "Alpha", "beta", "hidden"}))
        << "equal loads by name, what is not known last";
    EXPECT_EQ(names(processRows(snapshot, {.sort = UsageSort::memory, .limit = 2})), (Names{"beta", "gamma"}));
    EXPECT_EQ(names(processRows(snapshot, {.sort = UsageSort::name, .limit = 2})), (Names{"Alpha", "beta"}));
    EXPECT_EQ(names(processRows(snapshot, {.sort = UsageSort::net, .limit = 1})), (Names{"beta"}))
        << "0 is known, the others are not";
    EXPECT_EQ(names(processRows(snapshot, {.filter = "shop"})), (Names{"gamma"}));
    EXPECT_EQ(names(processRows(snapshot, {.filter = "nothing"})), Names());
}

TEST(UsageTable, showsADashForWhatTheSystemHides) {
    const UsageRow hidden = usageRow(machine().processes[3], 3);
    const std::string line = plainText(usageLine(hidden, 120));
    EXPECT_NE(line.find("hidden (restricted)"), std::string::npos) << line;
    EXPECT_EQ(line.find("0 B"), std::string::npos) << line;
    EXPECT_NE(line.find("—"), std::string::npos) << line;
    ProcessSnapshot hostile;
    hostile.name = "a\x1b[2J" + std::string(300, 'w');
    for (const int width : {1, 10, 30, 60, 80, 200}) {
        EXPECT_LE(columns(usageLine(usageRow(hostile, 0), width)), width);
        EXPECT_LE(columns(usageHeading("PID", UsageSort::cpu, width)), width);
        EXPECT_EQ(plainText(usageLine(usageRow(hostile, 0), width)).find('\x1b'), std::string::npos);
    }
    EXPECT_EQ(columns(usageHeading("PID", UsageSort::cpu, 100)), columns(usageLine(hidden, 100))) << "columns align";
}

} // namespace
} // namespace ostrivane::cli
