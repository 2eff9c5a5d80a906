#include "bench/AllocationCount.hpp"
#include "core/judgement/AlertEngine.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace ostrivane {

namespace {

constexpr int applicationCount = 150;
constexpr double tick = 2; // seconds
constexpr int ticksOfThreeHours = 5400;

/// Snapshots of a desktop on which `busy` applications pass every threshold and the others none, in another order each:
/// applications come by load.
std::vector<SystemSnapshot> desktopSnapshots(int busy) {
    std::mt19937 random(1815);
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{1'700'000'000});
    snapshot.interval = tick;
    snapshot.memory.total = 16ULL << 30;
    snapshot.thermal.cpuTemperature = 60;
    snapshot.battery.isPresent = true;
    snapshot.battery.state = BatterySnapshot::State::discharging;
    for (int at = 0; at < applicationCount; ++at) {
        ApplicationSnapshot app;
        app.name = "Application " + std::to_string(at);
        app.key = at % 2 == 0 ? "/usr/share/applications/org.example.Application" + std::to_string(at) + ".desktop"
                              : "exe:worker-" + std::to_string(at);
        app.cpu = at < busy ? 1.5 : at / 1000.0;
        app.memory = 50'000'000;
        app.diskWriteRate = at < busy ? 80e6 : at;
        app.netInRate = at < busy ? 20e6 : at;
        snapshot.applications.push_back(std::move(app));
    }
    std::vector<SystemSnapshot> snapshots(8, snapshot);
    for (SystemSnapshot& one : snapshots)
        std::shuffle(one.applications.begin(), one.applications.end(), random);
    return snapshots;
}

/// The argument is how many of the applications are busy.
void evaluateAlerts(benchmark::State& state) {
    std::vector<SystemSnapshot> snapshots = desktopSnapshots(static_cast<int>(state.range(0)));
    AlertEngine engine(AlertRule::defaults, PlatformWords::Linux);
    double time = snapshots.front().timestamp.seconds;
    std::size_t at = 0;
    const auto evaluate = [&] {
        SystemSnapshot& snapshot = snapshots[at++ % snapshots.size()];
        snapshot.timestamp.seconds = time += tick;
        for (ApplicationSnapshot& app : snapshot.applications) // a leak in each busy one
            if (app.cpu > 1)
                app.memory += 8 << 20;
        benchmark::DoNotOptimize(engine.evaluate(snapshot));
    };
    for (int count = 0; count < ticksOfThreeHours; ++count)
        evaluate();
    const std::uint64_t before = allocationsSoFar();
    for (auto _ : state)
        evaluate();
    reportAllocations(state, before);
}
BENCHMARK(evaluateAlerts)->Arg(0)->Arg(10)->Arg(applicationCount)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace ostrivane
