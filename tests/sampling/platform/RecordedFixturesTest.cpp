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
    const SamplingDemand demand;
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

} // namespace
} // namespace ostrivane
