#include "core/sampling/MachineCollectors.hpp"
#include "core/sampling/TickRunner.hpp"
#include "core/sampling/platform/recorded/Playback.hpp"
#include "core/sampling/platform/recorded/RecordedMachine.hpp"
#include "core/sampling/platform/recorded/RecordingMachine.hpp"
#include "core/sampling/platform/recorded/RecordingWriter.hpp"
#include "core/sampling/platform/recorded/TickNotes.hpp"
#include "tests/Fixtures.hpp"
#include "tests/sampling/EngineHarness.hpp"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace ostrivane {
namespace {

/// Runs every tick of a recording.
std::vector<SystemSnapshot> played(const std::string& file) {
    auto playback = std::make_shared<Playback>(file);
    EXPECT_EQ(playback->problem(), std::nullopt);
    std::vector<SystemSnapshot> snapshots;
    MachineCollectors collectors(recordedMachine(playback));
    TickRunner runner(collectors);
    const auto clock = recordedClock(playback, std::make_unique<ManualClock>(), 1, [] {});
    const SamplingDemand demand{.windowVisible = true};
    const SamplingSettings settings;
    const RunningApps apps;
    while (playback->hasNext()) {
        runner.begin({demand, settings, apps, *clock});
        snapshots.push_back(*runner.finish(std::nullopt));
    }
    EXPECT_EQ(playback->problem(), std::nullopt);
    return snapshots;
}

void expectPlausible(const SystemSnapshot& snapshot) {
    const CPUSnapshot& cpu = snapshot.cpu;
    EXPECT_NEAR(cpu.usage + cpu.idle, 1, 1e-9);
    EXPECT_FALSE(cpu.cores.empty());
    for (const CoreLoad& core : cpu.cores)
        EXPECT_TRUE(core.usage >= 0 && core.usage <= 1) << core.id;
    const MemorySnapshot& memory = snapshot.memory;
    EXPECT_EQ(memory.app + memory.wired + memory.compressed + memory.cached + memory.free, memory.total);
    EXPECT_FALSE(snapshot.macModel.empty());
}

TEST(RecordedFixtures, aBusyVirtualMachine) {
    const auto snapshots = played(fixture("recordings/virtual-machine.jsonl").string());
    ASSERT_EQ(snapshots.size(), 20u);
    double usage = 0;
    for (std::size_t tick = 1; tick < snapshots.size(); ++tick) {
        expectPlausible(snapshots[tick]);
        EXPECT_NEAR(snapshots[tick].interval, 1, 0.2);
        EXPECT_EQ(snapshots[tick].cpu.cores.size(), 2u);
        usage += snapshots[tick].cpu.usage / 19;
    }
    EXPECT_GT(usage, 0.9) << "it compiled on both cores all the while";
    EXPECT_GT(snapshots.back().cpu.loadAverage[0], 5);
}

TEST(RecordedFixtures, aLaptopOfTwoKindsOfCores) {
    const auto snapshots = played(fixture("recordings/laptop.jsonl").string());
    ASSERT_EQ(snapshots.size(), 60u);
    expectPlausible(snapshots.back());
    EXPECT_EQ(snapshots.back().cpu.performanceCoreCount, 8);
    EXPECT_EQ(snapshots.back().cpu.cores.back().kind, CoreLoad::Kind::efficiency);
    EXPECT_NEAR(snapshots.back().memory.swapInRate, 3, 1e-9);
}

TEST(RecordedFixtures, aDevelopersLaptopAsTheApplicationsThatAPersonKnows) {
    const auto snapshots = played(fixture("recordings/developer.jsonl").string());
    ASSERT_EQ(snapshots.size(), 12u);
    const SystemSnapshot& last = snapshots.back();
    expectPlausible(last);
    std::map<std::string, const ApplicationSnapshot*> byName;
    for (const ApplicationSnapshot& application : last.applications)
        byName[application.name] = &application;
    const auto processes = [&](const char* name) { return byName.contains(name) ? byName[name]->processCount() : 0; };
    EXPECT_EQ(processes("Firefox ESR"), 10);
    EXPECT_EQ(processes("Visual Studio Code"), 9) << "with its language servers and its terminal";
    EXPECT_EQ(processes("Terminal"), 11) << "with the servers that run in it";
    EXPECT_EQ(processes("Docker"), 3);
    EXPECT_EQ(processes("kernel"), 5);
    EXPECT_EQ(byName.at("Telegram Desktop")->bundleID, "org.telegram.desktop.desktop");
    EXPECT_EQ(byName.at("Obsidian-1.5.8")->mainPID, 5400);
    EXPECT_TRUE(byName.at("Firefox ESR")->isRunningApp && !byName.at("gnome-shell")->isRunningApp);
    EXPECT_TRUE(byName.at("Docker")->hasRestricted);
    EXPECT_NEAR(byName.at("Terminal")->cpu, 1.7, 0.7) << "most of it is the training";
    EXPECT_GT(byName.at("ollama")->gpu, 0.05);
    EXPECT_GT(byName.at("Firefox ESR")->netInRate, 50'000);

    std::map<std::int32_t, const ProcessSnapshot*> byPID;
    for (const ProcessSnapshot& process : last.processes)
        byPID[process.pid] = &process;
    EXPECT_EQ(byPID.at(2160)->devKind, "Vite");
    EXPECT_EQ(byPID.at(2160)->projectKey, "/home/ada/code/shop");
    EXPECT_EQ(byPID.at(2211)->devKind, "Django");
    EXPECT_EQ(byPID.at(2211)->projectKey, "/home/ada/code/api");
    EXPECT_TRUE(byPID.at(6100)->isRestricted && byPID.at(6100)->memoryIsRSS && !byPID.at(6100)->netInRate);
    EXPECT_FALSE(byPID.contains(2420)) << "the linker has ended";
    EXPECT_EQ(byPID.at(5100)->name, "telegram-desktop");
    EXPECT_EQ(snapshots[8].processCount - last.processCount, 3) << "the build ended: cargo, a compiler and the linker";
}

} // namespace
} // namespace ostrivane
