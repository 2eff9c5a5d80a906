// What a tick costs over many processes, beside the cheapest way to learn as much: reading the kept stat file of each,
// and statm and io of those whose stat changed. Both in one run, turn by turn, in processor time of this thread.
//
// The turns keep the pace of the program (`pace` seconds), because every so often the rest is read of idle processes
// too, and that has to show.

#include "core/sampling/MachineCollectors.hpp"
#include "core/sampling/TickRunner.hpp"
#include "core/sampling/platform/NativeMachine.hpp"

#include <benchmark/benchmark.h>

#include <dirent.h>
#include <fcntl.h>
#include <malloc.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ostrivane {
namespace {

constexpr std::chrono::milliseconds pace{2000};

double processorSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

/// The real time, without waiting; it can be set ahead.
class RealTime final : public Clock {
public:
    Date now() override {
        const auto since = std::chrono::system_clock::now().time_since_epoch();
        return Date{std::chrono::duration<double>(since).count() + ahead};
    }
    void setAhead(double seconds) { ahead += seconds; }
    Date beginTick() override { return now(); }
    bool wait(double /*seconds*/, std::function<void()> /*wake*/) override { return true; }
    void cancel() override {}

private:
    double ahead = 0;
};

/// Children that sleep; told to, one does a little, so that its stat changes.
class Crowd {
public:
    explicit Crowd(std::int64_t count) {
        children.reserve(static_cast<std::size_t>(count));
        for (std::int64_t index = 0; index < count; ++index) {
            const pid_t child = ::fork();
            if (child == 0)
                live();
            if (child > 0)
                children.push_back(child);
        }
    }
    ~Crowd() {
        for (const pid_t child : children)
            ::kill(child, SIGKILL);
        for (const pid_t child : children)
            ::waitpid(child, nullptr, 0);
    }
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

    void stir(std::size_t count) const {
        for (std::size_t index = 0; index < count && index < children.size(); ++index)
            ::kill(children[index], SIGUSR1);
    }

private:
    [[noreturn]] static void live() {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        struct sigaction action {};
        action.sa_handler = [](int) {};
        ::sigaction(SIGUSR1, &action, nullptr);
        for (;;) {
            ::pause();
            constexpr std::size_t size = 4096;
            void* page = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
            if (page == MAP_FAILED)
                continue;
            static_cast<char*>(page)[0] = 1; // a page fault, which stat counts
            ::munmap(page, size);
        }
    }

    std::vector<pid_t> children;
};

/// The cheapest round: nothing is parsed, and nothing kept but the texts.
class BareRound {
public:
    ~BareRound() {
        for (auto& [pid, kept] : known)
            ::close(kept.file);
        ::closedir(proc);
    }
    void run() {
        ++round;
        ::rewinddir(proc);
        while (const dirent* entry = ::readdir(proc)) {
            const int pid = std::atoi(static_cast<const char*>(entry->d_name));
            if (pid > 0)
                read(pid);
        }
        std::erase_if(known, [this](const auto& entry) {
            if (entry.second.round == round)
                return false;
            ::close(entry.second.file);
            return true;
        });
    }

private:
    struct Kept {
        int file = -1;
        std::uint64_t round = 0;
        std::string text;
    };

    void read(int pid) {
        const auto [place, isNew] = known.try_emplace(pid);
        Kept& kept = place->second;
        kept.round = round;
        const std::string folder = isNew ? std::to_string(pid) : std::string();
        if (isNew)
            kept.file = ::openat(::dirfd(proc), (folder + "/stat").c_str(), O_RDONLY | O_CLOEXEC);
        const ssize_t size = ::pread(kept.file, buffer.data(), buffer.size(), 0);
        const std::string_view text(buffer.data(), static_cast<std::size_t>(std::max(size, ssize_t{0})));
        if (text == kept.text)
            return;
        kept.text = text;
        for (const char* name : {"/statm", "/io"}) {
            const int file = ::openat(::dirfd(proc), (std::to_string(pid) + name).c_str(), O_RDONLY | O_CLOEXEC);
            if (file < 0)
                continue;
            benchmark::DoNotOptimize(::read(file, buffer.data(), buffer.size()));
            ::close(file);
        }
    }

    DIR* proc = ::opendir("/proc");
    std::unordered_map<int, Kept> known;
    std::uint64_t round = 0;
    std::array<char, 4096> buffer;
};

/// A whole tick with a window open, against the bare round.
void wholeTick(benchmark::State& state) {
    const Crowd crowd(state.range(0));
    const auto busy = static_cast<std::size_t>(state.range(0) * state.range(1) / 100);
    BareRound bare;
    bare.run();
    const std::size_t heapBefore = ::mallinfo2().uordblks;
    MachineCollectors collectors(nativeMachine());
    TickRunner runner(collectors);
    RealTime clock;
    const SamplingDemand demand{.windowVisible = true};
    const SamplingSettings settings;
    const RunningApps apps;
    const auto tickOnce = [&] {
        runner.begin({demand, settings, apps, clock});
        return runner.finish(std::nullopt);
    };
    constexpr int warmUp = 40; // ticks until the descriptors of all these new processes have been looked at
    for (int tick = 0; tick < warmUp; ++tick) {
        tickOnce();
        clock.setAhead(5);
    }
    const std::size_t heapKept = ::mallinfo2().uordblks - heapBefore;
    double bareSeconds = 0, tickSeconds = 0;
    std::int64_t processes = 0;
    const auto timed = [](double& sum, const auto& work) {
        const double begin = processorSeconds();
        work();
        sum += processorSeconds() - begin;
    };
    const auto bareTurn = [&] { timed(bareSeconds, [&] { bare.run(); }); };
    const auto tickTurn = [&] { timed(tickSeconds, [&] { processes = tickOnce()->processCount; }); };
    bool bareFirst = true; // whoever comes second finds the kernel's caches warm
    for (auto _ : state) {
        crowd.stir(busy);
        std::this_thread::sleep_for(pace);
        if (bareFirst)
            bareTurn();
        tickTurn();
        if (!bareFirst)
            bareTurn();
        bareFirst = !bareFirst;
    }
    state.counters["timesBare"] = tickSeconds / bareSeconds;
    state.counters["bareMicros"] = benchmark::Counter(bareSeconds * 1e6, benchmark::Counter::kAvgIterations);
    state.counters["tickMicros"] = benchmark::Counter(tickSeconds * 1e6, benchmark::Counter::kAvgIterations);
    state.counters["keptBytesPerProcess"] = static_cast<double>(heapKept) / static_cast<double>(processes);
    state.counters["processes"] = static_cast<double>(processes);
}
BENCHMARK(wholeTick)
    ->ArgNames({"processes", "busyPercent"})
    ->ArgsProduct({{300, 1000, 3000}, {0, 10}})
    ->Iterations(10)
    ->Unit(benchmark::kMillisecond);

/// Nobody looks: what the program takes of one core at its default interval.
void inTheBackground(benchmark::State& state) {
    const Crowd crowd(state.range(0));
    MachineCollectors collectors(nativeMachine());
    TickRunner runner(collectors);
    RealTime clock;
    const SamplingDemand demand;
    const SamplingSettings settings;
    const RunningApps apps;
    const auto tickOnce = [&] {
        runner.begin({demand, settings, apps, clock});
        benchmark::DoNotOptimize(runner.finish(std::nullopt));
    };
    for (int tick = 0; tick < 40; ++tick) {
        tickOnce();
        clock.setAhead(settings.backgroundInterval);
    }
    double tickSeconds = 0;
    for (auto _ : state) {
        std::this_thread::sleep_for(std::chrono::duration<double>(settings.backgroundInterval));
        const double begin = processorSeconds();
        tickOnce();
        tickSeconds += processorSeconds() - begin;
    }
    const double perTick = tickSeconds / static_cast<double>(state.iterations());
    state.counters["tickMicros"] = perTick * 1e6;
    state.counters["percentOfACore"] = 100 * perTick / settings.backgroundInterval;
}
BENCHMARK(inTheBackground)->ArgName("processes")->Arg(300)->Iterations(8)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace ostrivane
