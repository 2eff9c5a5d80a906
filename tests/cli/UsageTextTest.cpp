#include "cli/UsageText.hpp"
#include "cli/Session.hpp"

#include "core/model/JSON.hpp"
#include "core/model/Text.hpp"

#include <gtest/gtest.h>

namespace ostrivane::cli {
namespace {

SystemSnapshot machine() {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{0});
    snapshot.interval = 4;
    snapshot.perProcessNetworkAvailable = true;
    for (const int pid : {1, 2, 3}) {
        ProcessSnapshot& process = snapshot.processes.emplace_back();
        process.pid = pid;
        process.name = "worker " + std::to_string(pid);
        process.cpu = pid;
        process.netInRate = process.netOutRate = 1500;
        process.gpu = process.powerW = 0.5;
    }
    snapshot.applications.resize(1);
    snapshot.applications[0].name = "Works";
    return snapshot;
}

TEST(UsageText, cutsNothingOffWithoutATerminal) {
    SystemSnapshot snapshot = machine();
    snapshot.processes[0].name = std::string(50, 'n') + "END";
    snapshot.processes[0].isRestricted = true;
    const std::string text = usageText(snapshot, "", UsageSubject::processes, {}, std::nullopt);
    for (const char* part : {"nEND *", "300%", "WRITE", "1.5 KB/s", "50%", "500 mW"})
        EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
    for (const int width : {1, 30, 80}) {
        const std::string table = usageText(snapshot, "", UsageSubject::processes, {.limit = 1}, width);
        const auto lines = Text::lines(table);
        EXPECT_LE(Text::columns(lines[0]), width);
        EXPECT_LE(Text::columns(lines[1]), width);
    }
}

TEST(UsageText, saysWhatIsNotShown) {
    SystemSnapshot snapshot = machine();
    EXPECT_EQ(usageCount(snapshot, UsageSubject::processes, 3), "3 processes");
    EXPECT_EQ(usageCount(snapshot, UsageSubject::applications, 1), "1 application");
    EXPECT_EQ(usageGaps(snapshot, ""), "");
    snapshot.restrictedProcessCount = 2;
    snapshot.applications[0].hasRestricted = true;
    EXPECT_EQ(usageCount(snapshot, UsageSubject::processes, 1),
              "3 processes, 2 restricted (*, owned by others); 1 shown");
    EXPECT_EQ(usageCount(snapshot, UsageSubject::applications, 1),
              "1 application, 1 with restricted processes (*, owned by others)");
    snapshot.perProcessNetworkAvailable = false;
    for (ProcessSnapshot& process : snapshot.processes)
        process.powerW.reset();
    EXPECT_EQ(usageGaps(snapshot, ""), "No figures: network, power.");
    HostInfo host;
    EXPECT_EQ(limitsOf(Platform::macOS, host), "");
    host.hidesProcesses = true;
    EXPECT_EQ(usageGaps(snapshot, limitsOf(Platform::Linux, host)),
              "No figures: network, power. In and out: TCP only. The system hides processes of others.");
    snapshot.interval = 0;
    EXPECT_NE(usageGaps(snapshot, "").find("rates need that"), std::string::npos);
    EXPECT_EQ(usageCount(SystemSnapshot::empty(Date{0}), UsageSubject::applications, 0), "Processes: Unavailable");
}

TEST(UsageText, printsTheSameRowsAsRecords) {
    const std::string text = usageJSON(machine(), UsageSubject::processes, {.filter = "WORKER", .limit = 2});
    const auto json = JSON::parse(text);
    ASSERT_TRUE(json);
    const auto records = JSON::read<std::vector<ProcessSnapshot>>(*json);
    ASSERT_TRUE(records);
    ASSERT_EQ(records->size(), 2u);
    EXPECT_EQ(records->at(0), machine().processes[2]);
    EXPECT_EQ(records->at(1).pid, 2);
    EXPECT_EQ(usageJSON(machine(), UsageSubject::applications, {.filter = "none"}), "[]\n");
}

} // namespace
} // namespace ostrivane::cli
