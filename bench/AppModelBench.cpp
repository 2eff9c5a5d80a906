// What the main thread does with a snapshot, and what a week of snapshots leaves behind in memory.

#include "bench/AllocationCount.hpp"
#include "bench/DesktopModel.hpp"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <cstdint>

namespace ostrivane {

namespace {

constexpr std::int64_t ticksOfADay = 86400 / 5;

struct Face {
    bool windowVisible = false;
    bool recording = false;
};

/// After two hours every 2 seconds: all series are as long as they get.
void applySnapshot(benchmark::State& state, Face face) {
    ModelAlone alone;
    (*alone).setWindowVisible(face.windowVisible);
    Desktop desktop(2);
    for (int tick = 0; tick < 3600; ++tick)
        alone.apply(desktop.next());
    if (face.recording)
        (*alone).startSession("Work");
    alone.apply(desktop.next());
    const std::uint64_t before = allocationsSoFar();
    for (auto _ : state)
        alone.apply(desktop.next());
    reportAllocations(state, before);
}
BENCHMARK_CAPTURE(applySnapshot, hidden, Face{})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(applySnapshot, windowVisible, Face{.windowVisible = true})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(applySnapshot, recording, Face{.windowVisible = true, .recording = true})
    ->Unit(benchmark::kMicrosecond);

/// A week every 5 seconds with nobody looking, while an application an hour gives its place to another: bytes that are
/// allocated after a day, and how many more after seven.
void aWeek(benchmark::State& state) {
    double first = 0;
    double last = 0;
    for (auto _ : state) {
        ModelAlone alone;
        Desktop desktop(5);
        for (std::int64_t tick = 1; tick <= 7 * ticksOfADay; ++tick) {
            if (tick % (3600 / 5) == 0)
                desktop.replaceOne();
            alone.apply(desktop.next());
            if (tick == ticksOfADay)
                first = static_cast<double>(::mallinfo2().uordblks);
        }
        last = static_cast<double>(::mallinfo2().uordblks);
    }
    state.counters["bytesDay1"] = first;
    state.counters["grownByDay7"] = last - first;
}
BENCHMARK(aWeek)->Unit(benchmark::kSecond)->Iterations(1);

} // namespace

} // namespace ostrivane
