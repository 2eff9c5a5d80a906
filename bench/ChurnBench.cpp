// 100,000 ticks of a recorded machine on which processes come and go: what the program keeps must not grow.

#include "core/sampling/MachineCollectors.hpp"
#include "core/sampling/TickRunner.hpp"
#include "core/sampling/platform/recorded/Playback.hpp"
#include "core/sampling/platform/recorded/RecordedMachine.hpp"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <malloc.h>

#include <cstdint>
#include <istream>
#include <memory>
#include <streambuf>
#include <string>
#include <utility>

namespace ostrivane {
namespace {

constexpr int residents = 100; ///< processes that stay
constexpr int passers = 20;    ///< processes that are there for a while, one of them new on every tick
constexpr std::int64_t ticks = 100'000;

std::string reading(std::int64_t pid, std::int64_t tick, std::int64_t start) {
    return fmt::format(
        R"(,"processes.reading:{0}":{{"info":{{"pid":{0},"ppid":1,"uid":1000,"name":"tool-{1}","status":3,)"
        R"("startTime":{2},"rawStart":{2}}},"usage":{{"cpuTicks":{3},"footprint":1000000}},"threads":1}},)"
        R"("processes.path:{0}":"/home/ada/bin/tool-{1}","processes.arguments:{0}":["tool","{2}"],)"
        R"("processes.currentDirectory:{0}":"/home/ada/code/{1}")",
        pid, pid % 50, start, tick * 10'000'000);
}

/// The lines of a recording, made as they are read.
class EndlessRecording final : public std::streambuf {
private:
    int_type underflow() override {
        if (made > ticks)
            return traits_type::eof();
        line = made == 0
                   ? std::string(R"({"format":"ostrivane-recording","version":1,"program":"1","platform":"linux",)"
                                 R"("host":{"physicalMemory":1073741824,"userID":1000,"home":"/home/ada"}})")
                   : tick(made);
        line += '\n';
        ++made;
        setg(line.data(), line.data(), line.data() + line.size());
        return traits_type::to_int_type(line.front());
    }

    static std::string tick(std::int64_t number) {
        std::string ids, answers;
        for (std::int64_t pid = 1; pid <= residents; ++pid) {
            ids += fmt::format("{}{}", pid == 1 ? "" : ",", pid);
            if (number == 1 || pid % 10 == number % 10)
                answers += reading(pid, number, 1);
        }
        // Ids come round, as the system's do.
        const auto idOf = [](std::int64_t born) { return 1000 + born % 30'000; };
        for (std::int64_t born = number; born > number - passers && born > 0; --born)
            ids += fmt::format(",{}", idOf(born));
        answers += reading(idOf(number), number, number);
        return fmt::format(
            R"({{"at":{},"processes.ids":[{}]{},"sockets.traffic":{{"1":{{"bytesIn":{},"bytesOut":5}}}}}})",
            1'000'000 + number * 5, ids, answers, number * 100);
    }

    std::int64_t made = 0;
    std::string line;
};

void churn(benchmark::State& state) {
    for (auto _ : state) {
        EndlessRecording lines;
        const auto playback = std::make_shared<Playback>("churn", std::make_unique<std::istream>(&lines));
        MachineCollectors collectors(recordedMachine(playback));
        TickRunner runner(collectors);
        const auto clock = recordedClock(playback, nullptr, 1, {}); // nobody waits
        const SamplingDemand demand{.windowVisible = true};
        std::size_t early = 0;
        std::int64_t played = 0;
        for (; playback->hasNext(); ++played) {
            runner.begin({demand, SamplingSettings{}, RunningApps{}, *clock});
            benchmark::DoNotOptimize(runner.finish(std::nullopt));
            if (played == ticks / 20)
                early = ::mallinfo2().uordblks;
        }
        if (const auto problem = playback->problem())
            state.SkipWithError(problem->c_str());
        const auto grown = static_cast<double>(::mallinfo2().uordblks) - static_cast<double>(early);
        state.counters["ticks"] = static_cast<double>(played);
        state.counters["heapAtFivePercentKiB"] = static_cast<double>(early) / 1024;
        state.counters["grownKiB"] = grown / 1024;
    }
}
BENCHMARK(churn)->Iterations(1)->Unit(benchmark::kSecond);

} // namespace
} // namespace ostrivane
