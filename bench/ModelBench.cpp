#include "bench/AllocationCount.hpp"
#include "core/model/JSON.hpp"
#include "core/model/RateTracker.hpp"
#include "core/model/RollingSeries.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

namespace ostrivane {

namespace {

constexpr std::int32_t processCount = 5000;

/// One sample every 2 seconds for an hour in buckets of 5, as an alert rule keeps of each watched application.
void rollingSeriesAppend(benchmark::State& state) {
    RollingSeries series(3600, 5);
    double time = 0;
    const auto append = [&] {
        series.append(0.5, time);
        time += 2;
    };
    for (int sample = 0; sample < 4000; ++sample)
        append();
    const std::uint64_t before = allocationsSoFar();
    for (auto _ : state)
        append();
    reportAllocations(state, before);
    benchmark::DoNotOptimize(series.latest());
}
BENCHMARK(rollingSeriesAppend);

/// The one allocation is the result's.
void rateTrackerRates(benchmark::State& state) {
    RateTracker<std::uint64_t> tracker;
    PidMap<std::uint64_t> counters;
    for (std::int32_t pid = 1; pid <= processCount; ++pid)
        counters[pid * 7] = static_cast<std::uint64_t>(pid) * 1'000'003;
    double now = 0;
    for (int tick = 0; tick < 3; ++tick)
        tracker.rates(counters, ++now);
    const std::uint64_t before = allocationsSoFar();
    for (auto _ : state)
        benchmark::DoNotOptimize(tracker.rates(counters, ++now));
    reportAllocations(state, before);
    state.SetItemsProcessed(state.iterations() * processCount);
}
BENCHMARK(rateTrackerRates)->Unit(benchmark::kMicrosecond);

SystemSnapshot busySnapshot() {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{1714724123.25});
    for (std::int32_t pid = 1; pid <= processCount; ++pid)
        snapshot.processes.push_back(
            {.pid = pid,
             .ppid = 1,
             .responsiblePID = pid,
             .name = fmt::format("worker-{}", pid),
             .path = fmt::format("/usr/lib/service/worker-{}", pid),
             .user = "user",
             .uid = 1000,
             .startTime = Date{1714720000.0 + pid / 7.0},
             .state = "Sleeping",
             .threads = pid % 40,
             .cpu = pid / 7919.0,
             .memory = static_cast<std::uint64_t>(pid) * 123'457,
             .diskReadRate = pid / 3.0,
             .diskReadTotal = static_cast<std::uint64_t>(pid) * 4096,
             .netInRate = pid / 11.0,
             .appKey = fmt::format("exe:worker-{}", pid % 200),
             .commandLine = fmt::format("/usr/lib/service/worker-{} --serve --name \"{}\"", pid, pid)});
    return snapshot;
}

void snapshotToJSON(benchmark::State& state) {
    const SystemSnapshot snapshot = busySnapshot();
    std::string text = JSON::text(snapshot);
    const std::uint64_t before = allocationsSoFar();
    for (auto _ : state) {
        text.clear();
        JSON::write(text, snapshot);
        benchmark::DoNotOptimize(text.data());
    }
    reportAllocations(state, before);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(snapshotToJSON)->Unit(benchmark::kMillisecond);

void snapshotFromJSON(benchmark::State& state) {
    const std::string text = JSON::text(busySnapshot());
    const std::uint64_t before = allocationsSoFar();
    for (auto _ : state) {
        const auto document = JSON::parse(text);
        const auto snapshot = document ? JSON::read<SystemSnapshot>(*document) : std::nullopt;
        if (!snapshot || snapshot->processes.size() != static_cast<std::size_t>(processCount))
            state.SkipWithError("the snapshot did not read back");
    }
    reportAllocations(state, before);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(snapshotFromJSON)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace ostrivane
