#include "bench/AllocationCount.hpp"
#include "core/history/MinuteAccumulator.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace ostrivane {

namespace {

constexpr int applicationCount = 150;

/// Snapshots of a busy desktop. The same applications stand in each, in another order: they come by load.
std::vector<SystemSnapshot> busySnapshots() {
    std::mt19937 random(1815);
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{1'700'000'040});
    snapshot.interval = 2;
    snapshot.thermal.fans.resize(2);
    for (int at = 0; at < applicationCount; ++at) {
        ApplicationSnapshot app;
        app.name = "Application " + std::to_string(at);
        app.key = at % 2 == 0 ? "/usr/share/applications/org.example.Application" + std::to_string(at) + ".desktop"
                              : "exe:worker-" + std::to_string(at);
        app.cpu = at / 100.0;
        app.memory = static_cast<std::uint64_t>(at) * 10'000'000;
        app.netInRate = at;
        app.powerW = at / 50.0;
        snapshot.applications.push_back(std::move(app));
    }
    std::vector<SystemSnapshot> snapshots(8, snapshot);
    for (SystemSnapshot& one : snapshots)
        std::shuffle(one.applications.begin(), one.applications.end(), random);
    return snapshots;
}

/// The argument is how many seconds lie between two snapshots: with 0 all fall into one minute, with 2 every 30th
/// closes one, with 60 each does.
void feedSnapshot(benchmark::State& state) {
    std::vector<SystemSnapshot> snapshots = busySnapshots();
    MinuteAccumulator accumulator(60);
    double time = snapshots.front().timestamp.seconds;
    std::size_t at = 0;
    const auto feed = [&] {
        SystemSnapshot& snapshot = snapshots[at++ % snapshots.size()];
        snapshot.timestamp.seconds = time;
        time += static_cast<double>(state.range(0));
        benchmark::DoNotOptimize(accumulator.add(snapshot));
    };
    for (int tick = 0; tick < 100; ++tick)
        feed();
    const std::uint64_t before = allocationsSoFar();
    for (auto _ : state)
        feed();
    reportAllocations(state, before);
    state.SetItemsProcessed(state.iterations() * applicationCount);
}
BENCHMARK(feedSnapshot)->Arg(0)->Arg(2)->Arg(60)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace ostrivane
