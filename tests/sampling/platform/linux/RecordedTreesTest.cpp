#include "core/sampling/MachineCollectors.hpp"
#include "core/sampling/TickRunner.hpp"
#include "core/sampling/platform/linux/LinuxMachine.hpp"
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

/// Answers from one tree, and from the next tick on from another.
class MachineInTime final : public Machine {
public:
    MachineInTime(const std::filesystem::path& first, const std::filesystem::path& later)
        : now(first), then(later), current(&now) {}

    void goOn() { current = &then; }
    Host& host() override { return current->host(); }
    Processor& processor() override { return current->processor(); }
    Memory& memory() override { return current->memory(); }
    Graphics& graphics() override { return current->graphics(); }
    Platform platform() const override { return Platform::Linux; }
    Processes& processes() override { return current->processes(); }
    SystemProcesses& systemProcesses() override { return current->systemProcesses(); }
    Sockets& sockets() override { return current->sockets(); }
    Applications& applications() override { return current->applications(); }
    Files& files() override { return current->files(); }

private:
    LinuxMachine now, then;
    LinuxMachine* current;
};

/// Asks a `Machine` that somebody else owns.
class Borrowed final : public Machine {
public:
    explicit Borrowed(Machine& other) : asked(other) {}
    Host& host() override { return asked.host(); }
    Processor& processor() override { return asked.processor(); }
    Memory& memory() override { return asked.memory(); }
    Graphics& graphics() override { return asked.graphics(); }
    Platform platform() const override { return asked.platform(); }
    Processes& processes() override { return asked.processes(); }
    SystemProcesses& systemProcesses() override { return asked.systemProcesses(); }
    Sockets& sockets() override { return asked.sockets(); }
    Applications& applications() override { return asked.applications(); }
    Files& files() override { return asked.files(); }

private:
    Machine& asked;
};

std::vector<SystemSnapshot> run(Collectors& collectors, Clock& clock, int ticks, const std::function<void()>& between) {
    TickRunner runner(collectors);
    const SamplingDemand demand;
    const SamplingSettings settings;
    const RunningApps apps;
    std::vector<SystemSnapshot> snapshots;
    for (int tick = 0; tick < ticks; ++tick) {
        runner.begin({demand, settings, apps, clock});
        snapshots.push_back(*runner.finish(std::nullopt));
        between();
    }
    return snapshots;
}

TEST(RecordedTrees, everyTreeIsAMachineThatCanBeRecorded) {
    for (const std::string tree : {"laptop-intel-hybrid", "desktop-amd", "board-arm-big-little"}) {
        const std::filesystem::path folder = fixture("linux/" + tree);
        const TemporaryTree later({folder});
        if (std::filesystem::exists(folder / "later"))
            later.layOver(folder / "later");
        const TemporaryFolder output;
        const std::string file = output.file(tree + ".jsonl");

        MachineInTime machine(folder, later.path());
        auto notes = std::make_shared<TickNotes>();
        auto ownedClock = std::make_unique<ManualClock>();
        ManualClock& time = *ownedClock;
        const auto clock = recordingClock(std::move(ownedClock), notes);
        MachineCollectors collectors(recordingMachine(std::make_unique<Borrowed>(machine), notes));
        RecordingWriter writer(file);
        RecordingHeader header;
        header.platform = Platform::Linux;
        header.host = machine.host().info();
        ASSERT_EQ(writer.open(header, false), std::nullopt);
        const auto recorded = run(collectors, *clock, 2, [&] {
            EXPECT_EQ(writer.append(notes->line()), std::nullopt);
            machine.goOn();
            time.time = time.time + 2;
        });

        auto playback = std::make_shared<Playback>(file);
        ASSERT_EQ(playback->problem(), std::nullopt);
        MachineCollectors again(recordedMachine(playback));
        const auto replayClock = recordedClock(playback, std::make_unique<ManualClock>(), 1, [] {});
        EXPECT_EQ(run(again, *replayClock, 2, [] {}), recorded) << tree;
        EXPECT_FALSE(recorded[1].cpu.cores.empty() || recorded[1].memory.total == 0) << tree;
    }
}

} // namespace
} // namespace ostrivane
