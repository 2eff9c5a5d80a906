#include "bench/AllocationCount.hpp"
#include "core/judgement/HealthEvaluator.hpp"
#include "core/judgement/InsightEngine.hpp"
#include "core/judgement/SessionRecorder.hpp"
#include "core/model/PlatformWords.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane {

namespace {

constexpr int applicationCount = 150;
constexpr int processCount = 500;
constexpr std::uint64_t gibibyte = 1ULL << 30;

SystemSnapshot busySnapshot() {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{1'700'000'040});
    snapshot.interval = 2;
    for (int at = 0; at < applicationCount; ++at) {
        ApplicationSnapshot app;
        app.name = "Application " + std::to_string(at);
        app.key = at % 2 == 0 ? "/usr/share/applications/org.example.Application" + std::to_string(at) + ".desktop"
                              : "exe:worker-" + std::to_string(at);
        app.cpu = at / 100.0;
        app.memory = static_cast<std::uint64_t>(at) * 10'000'000;
        app.isRunningApp = at % 5 == 0;
        app.powerW = at / 50.0;
        snapshot.applications.push_back(std::move(app));
    }
    for (int at = 0; at < processCount; ++at) {
        ProcessSnapshot process;
        process.pid = 1000 + 7 * at;
        process.name = "process-" + std::to_string(at);
        process.cpu = at / 500.0;
        process.appKey = snapshot.applications[static_cast<std::size_t>(at % applicationCount)].key;
        snapshot.processes.push_back(std::move(process));
    }
    return snapshot;
}

/// A machine on which every finding is made: the longest way.
SystemSnapshot troubledSnapshot(InsightContext& context) {
    SystemSnapshot snapshot = busySnapshot();
    snapshot.memory.pressure = MemoryPressure::critical;
    snapshot.memory.swapUsed = 8 * gibibyte;
    snapshot.thermal.state = ThermalLevel::critical;
    snapshot.thermal.cpuTemperature = 99;
    snapshot.thermal.fans.resize(2);
    snapshot.battery.isPresent = true;
    snapshot.battery.healthCondition = "Service Recommended";
    snapshot.disk.volumes.resize(1);
    snapshot.disk.volumes.front().isRoot = true;
    snapshot.disk.volumes.front().total = 1'000'000'000'000;
    snapshot.applications[75].name = "Docker Desktop";
    snapshot.applications[75].memory = 100 * gibibyte;
    snapshot.applications[75].powerW = 1000;
    snapshot.devServers.resize(10);
    for (DevServer& server : snapshot.devServers) {
        server.uptime = 90000;
        server.isIdle = true;
        server.ports = {3000, 3001};
    }
    snapshot.aiWorkloads.resize(2);
    for (AIWorkload& workload : snapshot.aiWorkloads)
        workload.models = {"model"};
    context.pressureElevatedFor = 600;
    context.currentDrainPerHour = 20;
    context.typicalDrainPerHour = 5;
    context.storageGrowth.assign(3, {"/home/user/Projects", "Projects", 2'000'000'000, Date{1'700'000'000}});
    return snapshot;
}

/// Health and insights together.
void judge(benchmark::State& state, const SystemSnapshot& snapshot, const InsightContext& context) {
    const std::uint64_t before = allocationsSoFar();
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            HealthEvaluator::evaluate(snapshot, 0.4, context.pressureElevatedFor, PlatformWords::Linux));
        benchmark::DoNotOptimize(InsightEngine::insights(snapshot, context, PlatformWords::Linux));
    }
    reportAllocations(state, before);
}

void judgeBusyMachine(benchmark::State& state) {
    judge(state, busySnapshot(), {});
}
BENCHMARK(judgeBusyMachine)->Unit(benchmark::kMicrosecond);

void judgeTroubledMachine(benchmark::State& state) {
    InsightContext context;
    const SystemSnapshot snapshot = troubledSnapshot(context);
    judge(state, snapshot, context);
}
BENCHMARK(judgeTroubledMachine)->Unit(benchmark::kMicrosecond);

/// The same applications and processes from tick to tick, in another order: they come by load.
void recordSession(benchmark::State& state) {
    std::mt19937 random(1815);
    std::vector<SystemSnapshot> snapshots(8, busySnapshot());
    for (SystemSnapshot& snapshot : snapshots) {
        std::ranges::shuffle(snapshot.applications, random);
        std::ranges::shuffle(snapshot.processes, random);
    }
    SessionRecorder recorder("Build", Date{1'700'000'000});
    recorder.add(snapshots.front());
    std::size_t at = 0;
    const std::uint64_t before = allocationsSoFar();
    for (auto _ : state)
        recorder.add(snapshots[++at % snapshots.size()]);
    reportAllocations(state, before);
}
BENCHMARK(recordSession)->Unit(benchmark::kMicrosecond);

void summarizeSession(benchmark::State& state) {
    SessionRecorder recorder("Build", Date{1'700'000'000});
    recorder.add(busySnapshot());
    for (auto _ : state)
        benchmark::DoNotOptimize(recorder.summary(Date{1'700'003'600}));
}
BENCHMARK(summarizeSession)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace ostrivane
