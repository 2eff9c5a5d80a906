// What a tick costs: split by step, beside the bare reads of the same files, and what the engine adds of its own.

#include "core/sampling/CPUCollector.hpp"
#include "core/sampling/Collectors.hpp"
#include "core/sampling/MemoryCollector.hpp"
#include "core/sampling/SamplingEngine.hpp"
#include "core/sampling/TickRunner.hpp"
#include "core/sampling/platform/NativeMachine.hpp"

#include <benchmark/benchmark.h>
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <ctime>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace ostrivane {
namespace {

/// Goes on by two seconds a tick, and waits for nobody.
class StepClock final : public Clock {
public:
    Date now() override { return time; }
    Date beginTick() override { return time = time + 2; }
    bool wait(double /*seconds*/, std::function<void()> wake) override {
        pending = std::move(wake);
        return true;
    }
    void cancel() override { pending = nullptr; }
    void pass() {
        if (auto wake = std::exchange(pending, nullptr))
            wake();
    }

private:
    Date time{1e9};
    std::function<void()> pending;
};

/// Asks for processor and memory alone. What processes cost is `ProcessBench`'s.
class ProcessorAndMemory final : public Collectors {
public:
    HostInfo hostInfo() override { return machine->host().info(); }
    std::optional<CPUTicks> cpuTicks() override { return machine->processor().ticks(); }
    std::optional<LoadAverage> loadAverage() override { return machine->processor().loadAverage(); }
    std::optional<double> uptime() override { return machine->host().uptime(); }
    std::optional<MemoryReading> memory() override { return machine->memory().reading(); }

private:
    const std::unique_ptr<Machine> machine = nativeMachine();
};

/// The files of a tick of processor and memory, kept open.
class BareFiles {
public:
    BareFiles() {
        for (const char* path :
             {"/proc/stat", "/proc/loadavg", "/proc/meminfo", "/proc/vmstat", "/proc/pressure/memory"})
            if (const int file = ::open(path, O_RDONLY | O_CLOEXEC); file >= 0)
                files.push_back(file);
    }
    ~BareFiles() {
        for (const int file : files)
            ::close(file);
    }
    void read() {
        for (const int file : files)
            for (off_t at = 0;;) {
                const ssize_t size = ::pread(file, buffer.data(), buffer.size(), at);
                if (size <= 0)
                    break;
                at += size;
            }
    }

private:
    std::vector<int> files;
    std::array<char, 65536> buffer;
};

double processorSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

void readEverything(Machine& machine) {
    benchmark::DoNotOptimize(machine.processor().ticks());
    benchmark::DoNotOptimize(machine.processor().loadAverage());
    benchmark::DoNotOptimize(machine.host().uptime());
    benchmark::DoNotOptimize(machine.memory().reading());
}

void bareReads(benchmark::State& state) {
    BareFiles files;
    for (auto _ : state)
        files.read();
}
BENCHMARK(bareReads);

void readTicks(benchmark::State& state) {
    const auto machine = nativeMachine();
    for (auto _ : state)
        benchmark::DoNotOptimize(machine->processor().ticks());
}
BENCHMARK(readTicks);

void readLoadAverage(benchmark::State& state) {
    const auto machine = nativeMachine();
    for (auto _ : state)
        benchmark::DoNotOptimize(machine->processor().loadAverage());
}
BENCHMARK(readLoadAverage);

void readUptime(benchmark::State& state) {
    const auto machine = nativeMachine();
    for (auto _ : state)
        benchmark::DoNotOptimize(machine->host().uptime());
}
BENCHMARK(readUptime);

void readMemory(benchmark::State& state) {
    const auto machine = nativeMachine();
    for (auto _ : state)
        benchmark::DoNotOptimize(machine->memory().reading());
}
BENCHMARK(readMemory);

void computeProcessor(benchmark::State& state) {
    CPUTicks before, now;
    for (std::uint64_t core = 0; core < 16; ++core) {
        before.perCore.push_back({core, 2 * core, 1000 * core, 0});
        now.perCore.push_back({core + 20, 2 * core + 5, 1000 * core + 175, 0});
    }
    const std::optional<CPUTicks> previous = before;
    for (auto _ : state)
        benchmark::DoNotOptimize(CPUCollector::compute(previous, now, {8, 8, 16}, {}));
}
BENCHMARK(computeProcessor);

void computeMemory(benchmark::State& state) {
    const MemoryReading reading{.counters = {.wired = 1000, .internalPages = 9000, .externalPages = 4000},
                                .swap = SwapUsage{1 << 30, 1 << 20},
                                .pressureLevel = 1,
                                .availablePercent = 57};
    const std::optional<VMCounters> previous = reading.counters;
    for (auto _ : state)
        benchmark::DoNotOptimize(MemoryCollector::compute(reading, previous, 2, 4096, 1ull << 34));
}
BENCHMARK(computeMemory);

/// A whole tick of processor and memory against the bare reads, turn by turn in one run: the counter "timesBare".
void tickOverBareReads(benchmark::State& state) {
    BareFiles files;
    ProcessorAndMemory collectors;
    TickRunner runner(collectors);
    StepClock clock;
    const SamplingDemand demand;
    const SamplingSettings settings;
    const RunningApps apps;
    double bare = 0, tick = 0;
    for (auto _ : state) {
        const double begin = processorSeconds();
        files.read();
        const double between = processorSeconds();
        runner.begin({demand, settings, apps, clock});
        benchmark::DoNotOptimize(runner.finish(std::nullopt));
        const double end = processorSeconds();
        bare += between - begin;
        tick += end - between;
    }
    state.counters["timesBare"] = tick / bare;
    state.counters["bareMicros"] = benchmark::Counter(bare * 1e6, benchmark::Counter::kAvgIterations);
    state.counters["tickMicros"] = benchmark::Counter(tick * 1e6, benchmark::Counter::kAvgIterations);
}
BENCHMARK(tickOverBareReads);

/// What the engine adds to the readings with no interface visible: its processor time a tick, less that of asking
/// alone.
void engineBeyondReadings(benchmark::State& state) {
    boost::asio::io_context context;
    auto ownedClock = std::make_unique<StepClock>();
    StepClock& clock = *ownedClock;
    SamplingEngine engine(context.get_executor(), std::make_unique<ProcessorAndMemory>(), std::move(ownedClock));
    const auto machine = nativeMachine();
    engine.start();
    context.poll();
    double readings = 0, ticks = 0;
    for (auto _ : state) {
        const double begin = processorSeconds();
        readEverything(*machine);
        const double between = processorSeconds();
        clock.pass();
        context.restart();
        context.poll();
        const double end = processorSeconds();
        readings += between - begin;
        ticks += end - between;
    }
    state.counters["addedMicros"] = benchmark::Counter((ticks - readings) * 1e6, benchmark::Counter::kAvgIterations);
}
BENCHMARK(engineBeyondReadings);

/// Answers with many processes, at the cost of one copy of the list.
class CrowdCollectors final : public Collectors {
public:
    explicit CrowdCollectors(std::int32_t count) {
        for (std::int32_t pid = 1; pid <= count; ++pid) {
            ProcessSnapshot process;
            process.pid = pid;
            process.name = "a process with a name";
            process.path = "/usr/lib/some/folder/a-process-with-a-name";
            process.user = "user";
            process.appKey = "/usr/share/applications/some.desktop";
            process.commandLine = *process.path + " --with --some arguments";
            process.cpu = 1;
            output.processes.push_back(std::move(process));
        }
    }
    ProcessOutput processes(const ProcessRequest&) override { return output; }

private:
    ProcessOutput output;
};

/// A tick with 5,000 processes and so many consumers; the difference between two rows is what handing on costs.
void handToConsumers(benchmark::State& state) {
    boost::asio::io_context context;
    auto ownedClock = std::make_unique<StepClock>();
    StepClock& clock = *ownedClock;
    SamplingEngine engine(context.get_executor(), std::make_unique<CrowdCollectors>(5000), std::move(ownedClock));
    for (std::int64_t consumer = 0; consumer < state.range(0); ++consumer)
        engine.addConsumer([](const SharedSnapshot& snapshot, const SamplingEngine::Turn&) {
            benchmark::DoNotOptimize(snapshot->processes.size());
        });
    engine.start();
    for (auto _ : state) {
        clock.pass();
        context.restart();
        context.poll();
    }
}
BENCHMARK(handToConsumers)->Arg(0)->Arg(2)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace ostrivane
