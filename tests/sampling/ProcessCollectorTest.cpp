#include "core/sampling/ProcessCollector.hpp"

#include "core/attribution/DesktopEntryIndex.hpp"
#include "tests/sampling/FakeProcesses.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

class ProcessCollectorTest : public testing::Test {
protected:
    ProcessOutput sample(double now, const ProcessCollector::Joined& joined = {}, const PIDSet& listening = {},
                         bool refreshProjects = false) {
        return collector.sample(now, joined, refreshProjects, listening);
    }

    FakeProcesses processes;
    ProjectDetector projects{"/home/ada", ProjectExclusions::onLinux,
                             ProjectFiles{[](const std::string& path) { return path == "/home/ada/shop/package.json"; },
                                          [](const std::string&) { return std::vector<std::string>(); },
                                          [](const std::string&) { return std::optional<std::string>(); }}};
    ProcessCollector collector{
        processes,
        projects,
        std::make_shared<const AppRules>(AppRules::forMacOS([](const std::string&) { return false; }, "/Users/ada")),
        {.userID = 1000, .nanosPerTick = 1, .restrictedHidesTraffic = false}};
};

TEST_F(ProcessCollectorTest, ratesComeFromTheReadingBeforeOfTheSameProcess) {
    ProcessReading& one = processes.add(5, "worker");
    EXPECT_EQ(sample(10).processes[0].cpu, 0) << "nothing to compare with yet";
    one.usage = {
        .cpuTicks = 3'000'000'000, .footprint = 2000, .diskRead = 100, .diskWritten = 50, .energyNJ = 4'000'000'000};
    ProcessSnapshot record = sample(12).processes[0];
    EXPECT_DOUBLE_EQ(record.cpu, 1.5);
    EXPECT_EQ(record.memory, 2000u);
    EXPECT_EQ(record.diskReadRate, 50);
    EXPECT_EQ(record.diskWriteRate, 25);
    EXPECT_EQ(record.powerW, 2);
    EXPECT_EQ(record.threads, 3);
    one.usage = ProcessUsage{};
    record = sample(14).processes[0];
    EXPECT_EQ(record.cpu + record.diskReadRate, 0) << "counters that fell";
    EXPECT_EQ(record.powerW, 0) << "it had a figure before";
    EXPECT_FALSE(sample(16).processes[0].powerW) << "the system reports none";
    one.usage->cpuTicks = 1'000'000'000;
    EXPECT_EQ(sample(16).processes[0].cpu, 0) << "no time passed";
    one.info.startTime = Date{102};
    one.usage->cpuTicks = 9'000'000'000;
    const ProcessOutput reused = sample(18);
    EXPECT_EQ(reused.processes[0].cpu, 0) << "another process under the same id";
    EXPECT_DOUBLE_EQ(reused.lifetimeCPUSeconds.at(5), 9);
    EXPECT_EQ(collector.activity(5, 18).observed, 0);
}

TEST_F(ProcessCollectorTest, anIdThatCameRoundWithinASecondIsAnotherProcess) {
    ProcessReading& one = processes.add(5, "make");
    one.info.rawStart = 700;
    one.usage->cpuTicks = 1'000'000'000;
    sample(10);
    one.info.startTime = Date{100.02};
    EXPECT_EQ((one.usage->cpuTicks = 2'000'000'000, sample(12).processes[0].cpu), 0.5) << "the same by any clock";
    one.info.rawStart = 702;
    one.usage = {.cpuTicks = 9'000'000'000, .footprint = 1, .diskRead = 5000, .diskWritten = 5000};
    const ProcessSnapshot record = sample(14).processes[0];
    EXPECT_EQ(record.cpu + record.diskReadRate + record.diskWriteRate, 0) << "of two processes' counters";
    EXPECT_EQ(record.startTime, Date{100.02});
    EXPECT_EQ(collector.activity(5, 14).observed, 0);
}

TEST_F(ProcessCollectorTest, aTitleHidesNothingAndAnotherProgramOfTheSameNameShows) {
    processes.add(5, "node");
    processes.paths[5] = "/usr/bin/node";
    processes.argumentLists[5] = {"node", "/x/node_modules/.bin/next", "dev"};
    processes.add(6, "browser");
    processes.paths[6] = "/usr/bin/dash";
    sample(1);
    processes.readings[0].info.name = "next-server (v1";
    processes.argumentLists[5] = {"next-server (v14.2)"};
    processes.paths[6] = "/usr/lib/browser/browser"; // the wrapper has become what it wraps
    ProcessOutput output = sample(3);
    EXPECT_EQ(output.processes[0].devKind, "Next.js");
    EXPECT_EQ(output.processes[0].commandLine, "node /x/node_modules/.bin/next dev");
    EXPECT_EQ(output.processes[1].path, "/usr/lib/browser/browser");
    processes.paths[5] = "/usr/bin/python3";
    processes.argumentLists[5] = {"python3"};
    processes.readings[0].info.name = "python3";
    output = sample(5);
    EXPECT_EQ(output.processes[0].devKind, "Python");
    EXPECT_EQ(output.processes[0].commandLine, "python3");
}

TEST_F(ProcessCollectorTest, diskTotalsOfAnEarlierReadingGiveNoRateAndLaterOnesAreSharedOut) {
    ProcessReading& one = processes.add(5, "writer");
    one.diskIsFresh = false; // hidden so far
    sample(10);
    one.usage->diskWritten = 5000;
    one.diskIsFresh = true;
    EXPECT_EQ(sample(12).processes[0].diskWriteRate, 0) << "it may have written that long ago";
    one.diskIsFresh = false;
    EXPECT_EQ(sample(14).processes[0].diskWriteRate, 0);
    EXPECT_EQ(sample(20).processes[0].diskWriteRate, 0);
    one.usage->diskWritten = 6000;
    one.diskIsFresh = true;
    EXPECT_EQ(sample(22).processes[0].diskWriteRate, 100) << "over ten seconds";
}

TEST_F(ProcessCollectorTest, whatNeverChangesIsReadOnceAndTheGoneAreForgotten) {
    processes.add(5, "bash");
    processes.add(6, "other");
    processes.paths[5] = "/bin/bash";
    sample(1);
    sample(3);
    sample(4);
    EXPECT_EQ(processes.staticReads, 4) << "once, and once more while they are young";
    processes.readings[0].info.name = "make"; // the shell's child has become another program
    processes.paths[5] = "/usr/bin/make";
    EXPECT_EQ(sample(5).processes[0].path, "/usr/bin/make");
    processes.readings.pop_back();
    EXPECT_EQ(sample(7).processes.size(), 1u);
    EXPECT_EQ(collector.knownProcesses(), 1u);
    processes.readings[0].info.status = ProcessInfo::zombie;
    EXPECT_TRUE(sample(9).processes.empty());
    EXPECT_EQ(collector.knownProcesses(), 0u);
}

TEST_F(ProcessCollectorTest, namesThatWereCutComeFromThePath) {
    processes.add(1, "very-long-comma");
    processes.add(2, "renamed");
    processes.add(3, "nopath");
    processes.paths = {{1, "/usr/bin/very-long-command-name"}, {2, "/usr/bin/python3"}};
    const auto records = sample(1).processes;
    EXPECT_EQ(records[0].name, "very-long-command-name");
    EXPECT_EQ(records[1].name, "renamed");
    EXPECT_EQ(records[2].name, "nopath");
}

TEST_F(ProcessCollectorTest, restrictedProcessesShowOnlyWhatTheSamplerKnows) {
    processes.add(7, "sshd", 0).usage.reset();
    processes.add(8, "cron", 0).usage.reset();
    const PidMap<SystemProcessSampler::Entry> entries{{7, {.cpu = 0.25, .rss = 4096}}};
    const PidMap<TrafficRates> traffic{{7, {1, 2}}};
    const PidMap<double> gpu;
    const ProcessCollector::Joined joined{.systemEntries = &entries, .network = &traffic, .gpu = &gpu};
    const ProcessOutput output = sample(1, joined);
    EXPECT_EQ(output.restrictedCount, 2);
    EXPECT_TRUE(output.lifetimeCPUSeconds.empty());
    EXPECT_TRUE(output.processes[0].isRestricted && output.processes[0].memoryIsRSS);
    EXPECT_EQ(output.processes[0].cpu, 0.25);
    EXPECT_EQ(output.processes[0].memory, 4096u);
    EXPECT_FALSE(output.processes[0].threads || output.processes[0].commandLine);
    EXPECT_EQ(output.processes[1].memory, 0u);
    EXPECT_FALSE(output.processes[1].memoryIsRSS);
    EXPECT_EQ(output.processes[1].netInRate, 0) << "the source sees every process: no entry is no traffic";
    EXPECT_EQ(output.processes[0].gpu, 0);
    EXPECT_FALSE(sample(2).processes[0].netInRate) << "not available on this tick";

    ProcessCollector linuxLike(
        processes, projects,
        std::make_shared<const AppRules>(AppRules::forLinux(std::make_shared<const DesktopEntryIndex>())),
        {.userID = 1000, .nanosPerTick = 1, .restrictedHidesTraffic = true});
    const ProcessSnapshot hidden = linuxLike.sample(1, joined, false, {}).processes[1];
    EXPECT_FALSE(hidden.netInRate || hidden.gpu) << "its sockets cannot be seen: 0 would be a guess";
}

TEST_F(ProcessCollectorTest, projectsAreLookedUpForDevelopmentAndForWhatListens) {
    processes.add(1, "node");
    processes.argumentLists[1] = {"node", "server.js"};
    processes.paths[1] = "/usr/bin/node";
    processes.add(2, "gimp");
    processes.add(3, "shopd");
    processes.add(4, "strayd");
    for (const std::int32_t pid : {1, 2, 3})
        processes.directories[pid] = "/home/ada/shop";
    processes.directories[4] = "/var/empty";
    const auto records = sample(1, {}, {3, 4}).processes;
    EXPECT_EQ(records[0].devKind, "Node");
    EXPECT_EQ(records[0].commandLine, "node server.js");
    EXPECT_EQ(records[0].projectKey, "/home/ada/shop");
    EXPECT_FALSE(records[1].cwd) << "neither develops nor listens";
    EXPECT_TRUE(records[2].isDevProcess) << "it listens for a project";
    EXPECT_EQ(records[2].devKind, "shopd");
    EXPECT_FALSE(records[3].isDevProcess) << "it listens for none";
    const int before = processes.directoryReads;
    sample(3, {}, {3, 4});
    EXPECT_EQ(processes.directoryReads, before) << "known";
    collector.refreshWorkingDirectory(1);
    sample(5, {}, {3, 4});
    EXPECT_EQ(processes.directoryReads, before + 1);
    sample(7, {}, {3, 4}, true);
    EXPECT_EQ(processes.directoryReads, before + 4);
}

TEST_F(ProcessCollectorTest, activityIsWorkOrTrafficOfDevelopmentProcesses) {
    processes.paths[1] = "/usr/bin/node";
    ProcessReading& node = processes.add(1, "node");
    sample(100);
    EXPECT_FALSE(collector.activity(1, 130).sinceActive);
    EXPECT_EQ(collector.activity(1, 130).observed, 30);
    node.usage->cpuTicks = 1'000'000'000;
    sample(140);
    EXPECT_EQ(collector.activity(1, 150).sinceActive, 10);
    const PidMap<TrafficRates> some{{1, {1000, 1048}}}, more{{1, {1000, 1049}}};
    sample(160, {.systemEntries = nullptr, .network = &some, .gpu = nullptr});
    EXPECT_EQ(collector.activity(1, 160).sinceActive, 20);
    sample(180, {.systemEntries = nullptr, .network = &more, .gpu = nullptr});
    EXPECT_EQ(collector.activity(1, 180).sinceActive, 0);
    EXPECT_FALSE(collector.activity(99, 1).sinceActive);
}

TEST_F(ProcessCollectorTest, everyProcessEndsUnderAnApplication) {
    processes.add(1, "launchd", 0);
    processes.paths[1] = "/sbin/launchd";
    processes.add(50, "Foo");
    processes.paths[50] = "/Applications/Foo.app/Contents/MacOS/Foo";
    processes.add(51, "tool").info.ppid = 50;
    processes.paths[51] = "/Users/ada/bin/tool";
    processes.add(52, "own");
    processes.paths[52] = "/Users/ada/bin/own";
    std::vector<std::string> keys;
    for (const ProcessSnapshot& record : sample(1).processes)
        keys.push_back(record.appKey);
    EXPECT_EQ(keys, (std::vector<std::string>{"system", "/Applications/Foo.app", "/Applications/Foo.app", "exe:own"}));
}

TEST_F(ProcessCollectorTest, aSandboxWithoutAUnitIsKnownByItsNotes) {
    ProcessCollector linuxLike(
        processes, projects,
        std::make_shared<const AppRules>(AppRules::forLinux(std::make_shared<const DesktopEntryIndex>())),
        {.userID = 1000, .nanosPerTick = 1, .restrictedHidesTraffic = true});
    const std::string notes = "[Instance]\nname=wrong\n[Application]\nname=org.example.Player\nruntime=x\n";
    const std::string unit = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
                             "app-flatpak-org.example.Other-42.scope\n";
    processes.origins[1] = {.controlGroups = {}, .foreignRoot = true, .appImage = {}, .flatpakInfo = notes};
    processes.origins[2] = {.controlGroups = unit, .foreignRoot = true, .appImage = {}, .flatpakInfo = notes};
    processes.origins[3] = {
        .controlGroups = {}, .foreignRoot = true, .appImage = {}, .flatpakInfo = "[Application]\nname=\n"};
    for (const std::int32_t pid : {1, 2, 3}) {
        processes.add(pid, "player");
        processes.paths[pid] = "/app/bin/player";
    }
    std::vector<std::string> keys;
    for (const ProcessSnapshot& record : linuxLike.sample(1, {}, false, {}).processes)
        keys.push_back(record.appKey);
    EXPECT_EQ(keys, (std::vector<std::string>{"exe:org.example.Player", "exe:org.example.Other", "exe:player"}));
}

} // namespace
} // namespace ostrivane
