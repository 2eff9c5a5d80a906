#include "core/judgement/SessionRecorder.hpp"

#include "core/judgement/SessionSummaryJSON.hpp"
#include "tests/judgement/Snapshots.hpp"
#include "tests/model/FilledRecord.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace ostrivane {

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr Date sessionStart{1'700'000'000};
constexpr Date sessionEnd{1'700'000'100};

using Names = std::vector<std::string>;

ProcessSnapshot process(std::int32_t pid, double cpu, std::uint64_t memory = 0) {
    ProcessSnapshot made;
    made.pid = pid;
    made.name = "process " + std::to_string(pid);
    made.cpu = cpu;
    made.memory = memory;
    return made;
}

class SessionRecorderTest : public testing::Test {
protected:
    void add(double interval = 10) {
        snapshot.interval = interval;
        recorder.add(snapshot);
    }
    void add(std::vector<ApplicationSnapshot> apps, double interval = 10) {
        snapshot.applications = std::move(apps);
        add(interval);
    }
    SessionSummary summary() const { return recorder.summary(sessionEnd); }

    SessionRecorder recorder{"Build", sessionStart};
    SystemSnapshot snapshot = quietSnapshot();
};

TEST_F(SessionRecorderTest, yieldsZerosWithoutACountedSnapshot) {
    add({application("A", 1)}, 0);
    add(-1);
    add(nan);
    SessionSummary expected;
    expected.name = "Build";
    expected.start = sessionStart;
    expected.end = sessionEnd;
    expected.memoryPressurePeak = "Normal";
    EXPECT_EQ(summary(), expected);
}

TEST_F(SessionRecorderTest, averagesTheMachine) {
    snapshot.cpu.usage = 0.2;
    snapshot.memory.used = 4 * gibibyte;
    snapshot.memory.pressure = MemoryPressure::critical;
    snapshot.memory.swapUsed = gibibyte;
    snapshot.gpu.utilization = 0.5;
    snapshot.thermal.systemPowerW = 10;
    snapshot.disk.readBytesPerSec = 100;
    snapshot.network.outRate = 7;
    snapshot.battery.isPresent = true;
    snapshot.battery.percent = 80;
    add(2);
    snapshot.cpu.usage = 0.6;
    snapshot.memory.used = 2 * gibibyte;
    snapshot.memory.pressure = MemoryPressure::warning;
    snapshot.memory.swapUsed = 0;
    snapshot.gpu.utilization.reset(); // this snapshot does not count for its mean
    snapshot.battery.systemPowerW = 20;
    snapshot.battery.percent = 78;
    add(3600); // counts 60 seconds
    const SessionSummary made = summary();
    EXPECT_EQ(made.samples, 2);
    EXPECT_DOUBLE_EQ(made.cpu.average, 0.4);
    EXPECT_EQ(made.cpu.peak, 0.6);
    EXPECT_EQ(made.memoryUsed, (SessionSummary::Stat{3.0 * gibibyte, 4.0 * gibibyte}));
    EXPECT_EQ(made.memoryPressurePeak, "Critical");
    EXPECT_EQ(made.swapPeak, 1.0 * gibibyte);
    EXPECT_EQ(made.gpu, (SessionSummary::Stat{0.5, 0.5}));
    EXPECT_EQ(made.cpuTemperature, std::nullopt);
    EXPECT_EQ(made.systemPower, (SessionSummary::Stat{15, 20}));
    EXPECT_EQ(made.diskRead, 6200);
    EXPECT_EQ(made.netOut, 7 * 62);
    EXPECT_EQ(made.batteryStart, 80);
    EXPECT_EQ(made.batteryEnd, 78);
}

TEST_F(SessionRecorderTest, sumsApplications) {
    ApplicationSnapshot app = application("Compiler", 1, 3000);
    app.powerW = 2;
    app.diskWriteRate = 5;
    app.netInRate = 1;
    for (int tick = 0; tick < 5; ++tick)
        add({app});
    app.memory = 1000;
    app.netOutRate = 1;
    app.cpu = 0;
    app.name = "Renamed";
    add({app});
    for (int tick = 0; tick < 4; ++tick)
        add(std::vector<ApplicationSnapshot>{});
    ASSERT_EQ(summary().apps.size(), 1U);
    const SessionSummary::AppLine line = summary().apps.front();
    EXPECT_EQ(line.name, "Compiler");
    EXPECT_EQ(line.cpuSeconds, 50);
    EXPECT_EQ(line.avgCPU, 0.5); // of the 100 seconds of the session
    EXPECT_EQ(line.presentFraction, 0.6);
    EXPECT_EQ(line.peakMemory, 3000);
    EXPECT_EQ(line.memoryChange, -2000);
    EXPECT_EQ(line.energyJ, 120);
    EXPECT_EQ(line.diskWrite, 300);
    EXPECT_EQ(line.network, 70);
}

TEST_F(SessionRecorderTest, keepsTheLinesOfApplicationsThatMatter) {
    ApplicationSnapshot frugal = application("Frugal", 0.5, 100 * mebibyte); // every figure at its limit
    frugal.powerW = 1;
    ApplicationSnapshot hot = frugal;
    hot.key = "hot";
    hot.powerW = 1.01;
    add({application("Busy", 0.51), frugal, hot, application("Large", 0, 100 * mebibyte + 1)}, 1);
    Names kept;
    for (const auto& line : summary().apps)
        kept.push_back(line.key);
    EXPECT_EQ(kept, Names({"exe:Busy", "hot", "exe:Large"}));
}

TEST_F(SessionRecorderTest, limitsTheListsAndOrdersEqualLines) {
    for (int at = 0; at < 26; ++at)
        snapshot.applications.push_back(application(std::string(1, static_cast<char>('a' + at)), at == 25 ? 2 : 1));
    for (int pid = 16; pid > 0; --pid)
        snapshot.processes.push_back(process(pid, pid == 16 ? 2 : 1));
    add();
    const SessionSummary made = summary();
    ASSERT_EQ(made.apps.size(), 25U);
    EXPECT_EQ(made.apps[0].name, "z");
    EXPECT_EQ(made.apps[1].name, "a");
    EXPECT_EQ(made.apps[24].name, "x");
    ASSERT_EQ(made.processes.size(), 15U);
    EXPECT_EQ(made.processes[0].pid, 16);
    EXPECT_EQ(made.processes[1].pid, 1);
    EXPECT_EQ(made.processes[14].pid, 14);
}

TEST_F(SessionRecorderTest, countsProcessesFromWhenTheyMatter) {
    snapshot.applications = {application("Editor", 0)};
    snapshot.processes = {process(1, 0.005, 100 * mebibyte), process(2, 0.006), process(3, nan, 200 * mebibyte)};
    snapshot.processes[1].appKey = "exe:Editor";
    snapshot.processes[2].appKey = "exe:Gone";
    add();
    snapshot.processes = {process(1, 1), process(2, 0.001)};
    add();
    const auto lines = summary().processes;
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], (SessionSummary::ProcessLine{1, "process 1", "system", 10, 0}));
    EXPECT_EQ(lines[1], (SessionSummary::ProcessLine{2, "process 2", "Editor", 0.06, 0}));
    EXPECT_EQ(lines[2], (SessionSummary::ProcessLine{3, "process 3", "exe:Gone", 0, 200.0 * mebibyte}));
}

TEST_F(SessionRecorderTest, tellsWhatWasLaunchedAndQuit) {
    add({openApplication("Early", 0), openApplication("Stays", 0)}, 0); // not counted: "Early" has no name yet
    add({openApplication("Stays", 0), openApplication("Short", 0)});
    add({openApplication("Stays", 0), openApplication("Zed", 0), openApplication("Ann", 0), application("Hidden", 0)});
    snapshot.applications[2].name = "Anna";
    add();
    EXPECT_EQ(summary().launchedApps, Names({"Anna", "Zed"}));
    EXPECT_EQ(summary().quitApps, Names({"exe:Early"}));
}

TEST_F(SessionRecorderTest, staysFiniteWhateverComes) {
    for (const double figure : {nan, infinity, -infinity, 1e308, 1e308, -1e308}) {
        ApplicationSnapshot app = application("A" + std::to_string(figure), figure);
        ApplicationSnapshot same = application("Same", figure);
        same.powerW = same.netInRate = same.diskWriteRate = figure;
        snapshot.cpu.usage = snapshot.disk.readBytesPerSec = snapshot.network.inRate = figure;
        snapshot.gpu.utilization = snapshot.thermal.cpuTemperature = snapshot.battery.systemPowerW = figure;
        snapshot.processes = {process(1, figure), process(2, 1)};
        add({app, same, application("Plain", 1)});
    }
    const auto read = readSessionSummary(sessionSummaryJSON(summary()));
    ASSERT_TRUE(read); // so there was no figure that is no number
    ASSERT_FALSE(read->apps.empty());
    EXPECT_EQ(read->apps.back().name, "Plain");
    EXPECT_EQ(read->apps.back().cpuSeconds, 60);
}

TEST(SessionSummaryJSON, readsWhatItWrote) {
    auto summary = filledRecord<SessionSummary>();
    summary.name = "“Bäume” \"\\\n";
    summary.start = {1'795'276'800};
    summary.end = {1'795'276'861};
    EXPECT_EQ(readSessionSummary(sessionSummaryJSON(summary)), summary);
    EXPECT_EQ(readSessionSummary(sessionSummaryJSON(SessionSummary())), SessionSummary());
}

TEST(SessionSummaryJSON, leavesOutWhatIsAbsentAndWritesDatesAsText) {
    SessionSummary summary;
    summary.name = "Build";
    summary.start = {1'795'276'800.9};
    summary.end = {-1};
    summary.samples = 3;
    summary.gpu = SessionSummary::Stat{0.5, 1};
    summary.processes = {{7, "cc", "Compiler", 1.5, 2}};
    summary.quitApps = {"Mail"};
    EXPECT_EQ(sessionSummaryJSON(summary),
              R"({"name":"Build","start":"2026-11-21T16:00:00Z","end":"1969-12-31T23:59:59Z","samples":3,)"
              R"("cpu":{"average":0,"peak":0},"memoryUsed":{"average":0,"peak":0},"memoryPressurePeak":"",)"
              R"("swapPeak":0,"gpu":{"average":0.5,"peak":1},"diskRead":0,"diskWrite":0,"netIn":0,"netOut":0,)"
              R"("apps":[],"processes":[{"pid":7,"name":"cc","app":"Compiler","cpuSeconds":1.5,"peakMemory":2}],)"
              R"("launchedApps":[],"quitApps":["Mail"]})");
    for (const double impossible : {nan, infinity, -infinity, 1e12, -1e12}) {
        summary.end = {impossible};
        EXPECT_EQ(sessionSummaryJSON(summary), "{}");
    }
}

TEST(SessionSummaryJSON, readsNothingElse) {
    const std::string whole = sessionSummaryJSON(SessionSummary());
    ASSERT_TRUE(readSessionSummary(whole));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(readSessionSummary(whole.substr(0, length))) << length;

    const auto with = [&](const std::string& part, const std::string& instead) {
        std::string text = whole;
        return readSessionSummary(text.replace(text.find(part), part.size(), instead));
    };
    EXPECT_FALSE(with("\"samples\":0,", ""));
    EXPECT_FALSE(with("\"samples\":0", "\"samples\":0.5"));
    EXPECT_FALSE(with("\"apps\":[]", "\"apps\":[3]"));
    EXPECT_FALSE(with("\"swapPeak\":0", "\"swapPeak\":null"));
    EXPECT_FALSE(with("\"name\":\"\"", "\"name\":null"));
    EXPECT_TRUE(with("\"name\":\"\"", "\"name\":\"\",\"later\":{},\"gpu\":null"));
    EXPECT_FALSE(readSessionSummary("{}"));
    EXPECT_FALSE(readSessionSummary("[]"));

    const auto start = [&](const std::string& text) {
        const auto read = with("\"1970-01-01T00:00:00Z\"", text);
        return read ? std::optional(read->start.seconds) : std::nullopt;
    };
    EXPECT_EQ(start("\"2026-11-21T16:00:00Z\""), 1'795'276'800);
    EXPECT_EQ(start("\"2026-11-21T16:00:00.25Z\""), 1'795'276'800.25);
    EXPECT_EQ(start("\"2024-02-29T23:59:59Z\""), 1'709'251'199);
    EXPECT_EQ(start("\"0000-01-01T00:00:00Z\""), -62'167'219'200);
    for (const char* text : {"1795276800", "\"\"", "\"Z\"", "\"2026-11-21\"", "\"2026-11-21T16:00:00\"",
                             "\"2026-11-21T16:00:0Z\"", "\"2026-11-21 16:00:00Z\"", "\"2026-02-29T16:00:00Z\"",
                             "\"2026-00-10T16:00:00Z\"", "\"2026-11-21T24:00:00Z\"", "\"2026-11-21T16:60:00Z\"",
                             "\"2026-11-21T16:00:60Z\"", "\"2026-11-21T16:00:00.Z\"", "\"2026-11-21T16:00:00.5.5Z\"",
                             "\"2026-11-21T16:00:00.5e9Z\"", "\"-026-11-21T16:00:00Z\"", "\"+2026-11-21T16:00:00Z\""})
        EXPECT_FALSE(start(text)) << text;
}

} // namespace

} // namespace ostrivane
