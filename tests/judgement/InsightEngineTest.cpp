#include "core/judgement/InsightEngine.hpp"

#include "core/model/PlatformWords.hpp"
#include "tests/TimeZone.hpp"
#include "tests/judgement/Snapshots.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace ostrivane {

namespace {

using Level = Insight::Level;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

DevServer server(std::string kind, std::vector<std::uint16_t> ports, double uptime, std::uint64_t memory = 0) {
    DevServer made;
    made.kind = std::move(kind);
    made.ports = std::move(ports);
    made.uptime = uptime;
    made.memory = memory;
    return made;
}

ApplicationSnapshot drawing(ApplicationSnapshot app, std::optional<double> watts) {
    app.powerW = watts;
    return app;
}

class InsightEngineTest : public testing::Test {
protected:
    std::vector<Insight> all(const PlatformWords& words = PlatformWords::macOS) const {
        return InsightEngine::insights(snapshot, context, words);
    }

    std::vector<std::string> ids() const {
        std::vector<std::string> list;
        for (const Insight& insight : all())
            list.push_back(insight.id);
        return list;
    }

    bool has(std::string_view id) const { return std::ranges::count(ids(), id) == 1; }

    Insight found(std::string_view id, const PlatformWords& words = PlatformWords::macOS) const {
        const auto list = all(words);
        const auto place = std::ranges::find(list, id, &Insight::id);
        return place == list.end() ? throw std::out_of_range(std::string(id)) : *place;
    }

    SystemSnapshot snapshot = quietSnapshot();
    InsightContext context;
};

TEST_F(InsightEngineTest, saysNothingOfAQuietMachine) {
    EXPECT_TRUE(all().empty());
}

TEST_F(InsightEngineTest, namesWhoHoldsTheMemory) {
    ApplicationSnapshot browser = openApplication("Browser", 0, 3 * gibibyte);
    browser.pids = {1, 2, 3};
    snapshot.applications = {application("Mail", 0, 3 * gibibyte), systemApplication(0, 90 * gibibyte), browser,
                             application("Notes", 0, 4 * gibibyte)};
    snapshot.applications[0].memory -= 1;
    snapshot.applications[3].memory = gibibyte;
    const Insight insight = found("mem-share");
    EXPECT_EQ(insight.level, Level::info);
    EXPECT_EQ(insight.title, "Browser is responsible for 42% of application memory");
    EXPECT_EQ(insight.evidence, "3.00 GB across 3 processes, out of 7.00 GB used by all apps.");
    EXPECT_EQ(insight.appKey, "exe:Browser");
    EXPECT_EQ(insight.destination, "memory");

    const auto level = [&](std::uint64_t top, std::uint64_t other) -> std::optional<Level> {
        snapshot.applications = {application("Top", 0, top)};
        for (int index = 0; index < 7; ++index)
            snapshot.applications.push_back(application("Other", 0, other));
        return has("mem-share") ? std::optional(found("mem-share").level) : std::nullopt;
    };
    EXPECT_EQ(level(8 * gibibyte, 0), Level::notice);
    EXPECT_EQ(level(7 * gibibyte, gibibyte), Level::notice);
    EXPECT_EQ(level(3 * gibibyte, gibibyte), Level::info); // 0.3 exactly
    EXPECT_EQ(level(3 * gibibyte, gibibyte + 1), std::nullopt);
    EXPECT_EQ(level(gibibyte, 0), std::nullopt);
    EXPECT_EQ(level(gibibyte + 1, 0), Level::notice);
    const std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(level(most, most), Level::notice); // absurd, and nothing overflows
}

TEST_F(InsightEngineTest, tellsOfPressureThatLasts) {
    snapshot.memory.pressure = MemoryPressure::warning;
    snapshot.memory.availablePercent = 12;
    snapshot.memory.compressed = 2 * gibibyte;
    for (const std::optional<double> elapsed : {std::optional<double>(), std::optional(59.0), std::optional(nan)}) {
        context.pressureElevatedFor = elapsed;
        EXPECT_TRUE(all().empty());
    }
    context.pressureElevatedFor = 60;
    EXPECT_EQ(found("pressure").level, Level::warning);
    EXPECT_EQ(found("pressure").title, "Your Mac has been under elevated memory pressure for 1 min");
    EXPECT_EQ(found("pressure").evidence, "Memory pressure 88%, 2.00 GB compressed, 0 B swap.");
    snapshot.memory.pressure = MemoryPressure::critical;
    EXPECT_EQ(found("pressure", PlatformWords::Linux).title,
              "Your computer has been under critical memory pressure for 1 min");
}

TEST_F(InsightEngineTest, tellsOfSwapOnADisk) {
    snapshot.memory.swapUsed = gibibyte;
    EXPECT_FALSE(has("swap"));
    snapshot.memory.swapUsed = 4 * gibibyte;
    snapshot.memory.swapOutRate = 12.9;
    EXPECT_EQ(found("swap").level, Level::info);
    EXPECT_EQ(found("swap").title, "macOS is using 4.00 GB of swap");
    EXPECT_EQ(found("swap", PlatformWords::Linux).title, "The system is using 4.00 GB of swap");
    EXPECT_EQ(found("swap").evidence, "Swap means memory contents were written to disk because RAM ran short. "
                                      "Swap-outs right now: 12.");
    snapshot.memory.swapUsed += 1;
    snapshot.memory.swapOutRate = -infinity;
    EXPECT_EQ(found("swap").level, Level::notice);
    snapshot.memory.swapIsMemory = true;
    EXPECT_FALSE(has("swap"));
}

TEST_F(InsightEngineTest, sumsWhatDockerHolds) {
    snapshot.applications = {application("com.DOCKER.backend", 0, gibibyte / 2),
                             application("OrbStack", 0, gibibyte / 2), application("Dock", 0, gibibyte)};
    EXPECT_FALSE(has("docker"));
    snapshot.applications[0].memory += 1;
    EXPECT_EQ(found("docker").level, Level::info);
    EXPECT_EQ(found("docker").title, "Docker is using 1.00 GB");
    EXPECT_EQ(found("docker").evidence, "The Docker VM keeps its memory reserved even when containers are idle.");

    snapshot.applications[0].memory = 4 * gibibyte;
    snapshot.docker = DockerStatus::unavailable;
    snapshot.docker->containers.resize(3);
    snapshot.docker->containers[0].state = "exited";
    EXPECT_EQ(found("docker").level, Level::notice);
    EXPECT_EQ(found("docker").evidence, "The Docker VM keeps its memory reserved even when containers are idle.");
    snapshot.docker->containers[1].state = "running";
    EXPECT_EQ(found("docker").evidence, "1 running container. The VM keeps its memory even when containers are idle.");
    snapshot.docker->containers[2].state = "running";
    EXPECT_EQ(found("docker").evidence, "2 running containers. The VM keeps its memory even when containers are idle.");
    EXPECT_EQ(found("docker", PlatformWords::Linux).evidence.find("VM"), std::string::npos); // there is none
}

TEST_F(InsightEngineTest, tellsOfServersThatRunLongOrIdle) {
    snapshot.devServers = {server("Vite", {5173}, 86399), server("Broken", {1}, nan)};
    EXPECT_TRUE(all().empty());

    snapshot.devServers.push_back(server("Node", {3000, 3001}, 90000, gibibyte));
    snapshot.devServers.push_back(server("Rails", {80}, 90000));
    snapshot.devServers[2].activity = "idle 3h";
    snapshot.devServers[2].isIdle = true;
    EXPECT_EQ(ids(), std::vector<std::string>({"idle-servers", "long-server"})); // the same server
    EXPECT_EQ(found("long-server").title, "A development server has been running for 1d 1h");
    EXPECT_EQ(found("long-server").evidence, "Node on port 3000, 3001, idle 3h, 1.00 GB.");
    EXPECT_EQ(found("idle-servers").title, "1 dev server looks idle");
    EXPECT_EQ(found("idle-servers").evidence, "Together they hold 1.00 GB and ports 3000, 3001.");

    snapshot.devServers[0].isIdle = true;
    snapshot.devServers[0].memory = gibibyte;
    EXPECT_EQ(found("idle-servers").title, "2 dev servers look idle");
    EXPECT_EQ(found("idle-servers").evidence, "Together they hold 2.00 GB and ports 5173, 3000, 3001.");
}

TEST_F(InsightEngineTest, comparesTheDrainWithTheTypicalOne) {
    const auto says = [&](std::optional<double> current, std::optional<double> typical) {
        context.currentDrainPerHour = current;
        context.typicalDrainPerHour = typical;
        return has("drain");
    };
    EXPECT_FALSE(says(20, {}));
    EXPECT_FALSE(says({}, 5));
    EXPECT_FALSE(says(8, 5));
    EXPECT_FALSE(says(12, 8)); // 1.5 times exactly
    EXPECT_FALSE(says(12, 0));
    EXPECT_FALSE(says(nan, 5));
    EXPECT_TRUE(says(15.9, 9.9));
    EXPECT_EQ(found("drain").level, Level::notice);
    EXPECT_EQ(found("drain").evidence, "15% per hour now, versus 9% per hour on battery over the past week.");
}

TEST_F(InsightEngineTest, namesWhoDrawsThePower) {
    const auto says = [&](std::optional<double> top, std::optional<double> other, std::optional<double> system) {
        snapshot.applications = {drawing(application("None", 0), {}), drawing(systemApplication(0), system),
                                 drawing(application("Top", 0), top), drawing(application("Other", 0), other)};
        return has("power-share");
    };
    EXPECT_FALSE(says({}, {}, {}));
    EXPECT_FALSE(says({}, {}, 9));
    EXPECT_FALSE(says(0.5, {}, {}));
    EXPECT_FALSE(says(3.9, 3, 3.1));
    EXPECT_FALSE(says(5, nan, 1));
    EXPECT_TRUE(says(4, 2, 4)); // 0.4 exactly
    const Insight insight = found("power-share");
    EXPECT_EQ(insight.title, "Top is drawing 40% of app power");
    EXPECT_EQ(insight.evidence, "4.00 W of 10.0 W measured across all apps right now.");
    EXPECT_EQ(insight.appKey, "exe:Top");
    EXPECT_EQ(insight.destination, "battery");
}

TEST_F(InsightEngineTest, tellsOfFoldersThatGrewByTheLocalDay) {
    const TimeZone zone("UTC-14");     // fourteen hours ahead of UTC
    const Date evening{1'795'258'800}; // 2026-11-21 11:00 UTC
    context.storageGrowth = {{"/a", "A", 1'000'000'000, evening},
                             {"/b", "B", 1'000'000'001, evening},
                             {"/c", "C", std::numeric_limits<std::int64_t>::max(), Date{evening.seconds - 7200}},
                             {"/d", "D", 2'000'000'000, Date{infinity}}};
    const auto list = all();
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[0].id, "storage-/b");
    EXPECT_EQ(list[0].title, "B grew by 1 GB since Nov 22, 2026");
    EXPECT_EQ(list[0].evidence, "/b");
    EXPECT_EQ(list[1].title, "C grew by 9.22 EB since Nov 21, 2026");
    EXPECT_EQ(list[2].title, "D grew by 2 GB since —");
}

TEST_F(InsightEngineTest, warnsOfAFullDisk) {
    snapshot.disk.volumes = {rootVolume(100, 1000)};
    EXPECT_FALSE(has("disk-low"));
    snapshot.disk.volumes = {rootVolume(0, 0)};
    EXPECT_FALSE(has("disk-low"));
    snapshot.disk.volumes = {rootVolume(99'900'000'000, 1'000'000'000'000)};
    EXPECT_EQ(found("disk-low").title, "Disk has 99.9 GB free");
    EXPECT_EQ(found("disk-low").evidence, "9% of 1 TB. macOS needs free space for swap, updates and caches.");
    EXPECT_EQ(found("disk-low", PlatformWords::Linux).evidence,
              "9% of 1 TB. The system needs free space for swap, updates and caches.");
}

TEST_F(InsightEngineTest, listsLoadedModels) {
    AIWorkload busy;
    busy.pid = 7;
    busy.runtime = "Runtime";
    busy.memory = 512 * mebibyte;
    snapshot.aiWorkloads = {busy, busy, busy};
    snapshot.aiWorkloads[1].pid = 8;
    snapshot.aiWorkloads[1].models = {"small:7b"};
    snapshot.aiWorkloads[2].pid = 9;
    snapshot.aiWorkloads[2].models = {"one", "two"};
    snapshot.aiWorkloads[2].modelMemory = gibibyte;
    EXPECT_EQ(ids(), std::vector<std::string>({"ai-8", "ai-9"}));
    EXPECT_EQ(found("ai-8").title, "Runtime has small:7b loaded");
    EXPECT_EQ(found("ai-8").evidence, "Process memory 512 MB.");
    EXPECT_EQ(found("ai-9").title, "Runtime has 2 models loaded");
    EXPECT_EQ(found("ai-9").evidence, "Process memory 512 MB, model 1.00 GB.");
}

TEST_F(InsightEngineTest, warnsOfHeat) {
    snapshot.thermal.state = ThermalLevel::fair;
    EXPECT_FALSE(has("thermal"));
    snapshot.thermal.state = ThermalLevel::serious;
    EXPECT_EQ(found("thermal").title, "macOS reports serious thermal pressure");
    EXPECT_EQ(found("thermal").evidence, "CPU Unavailable.");
    snapshot.thermal.state = ThermalLevel::critical;
    snapshot.thermal.cpuTemperature = 99;
    snapshot.thermal.fans = {fan(5000.7), fan(0)};
    EXPECT_EQ(found("thermal", PlatformWords::Linux).title, "The system reports critical thermal pressure");
    EXPECT_EQ(found("thermal").evidence, "CPU 99 °C, 5000 rpm, 0 rpm.");
}

TEST_F(InsightEngineTest, putsWarningsFirstAndKeepsTheOrderWithinALevel) {
    snapshot.memory.swapUsed = 2 * gibibyte;
    snapshot.memory.pressure = MemoryPressure::warning;
    snapshot.thermal.state = ThermalLevel::critical;
    snapshot.disk.volumes = {rootVolume(1, 100)};
    snapshot.applications = {drawing(application("docker", 0, 5 * gibibyte), 3)};
    snapshot.devServers = {server("Node", {3000}, 90000)};
    snapshot.devServers.front().isIdle = true;
    snapshot.aiWorkloads.resize(1);
    snapshot.aiWorkloads.front().models = {"model"};
    context.pressureElevatedFor = 100;
    context.currentDrainPerHour = 20;
    context.typicalDrainPerHour = 5;
    context.storageGrowth = {{"/a", "A", 2'000'000'000, {}}};
    EXPECT_EQ(ids(), std::vector<std::string>({"pressure", "disk-low", "thermal", "mem-share", "docker", "idle-servers",
                                               "drain", "swap", "long-server", "power-share", "storage-/a", "ai-0"}));
}

} // namespace

} // namespace ostrivane
