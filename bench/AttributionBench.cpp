#include "bench/AllocationCount.hpp"
#include "core/attribution/Aggregator.hpp"
#include "core/attribution/AppGrouper.hpp"
#include "core/attribution/AppRules.hpp"
#include "core/attribution/DesktopEntryIndex.hpp"
#include "core/attribution/UnitLeaders.hpp"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

namespace ostrivane {
namespace {

using AppGrouper::Input;

constexpr std::int32_t processCount = 3000;

/// A busy machine: kernel threads, services, and 60 terminals whose tools stand up to eight deep below them.
std::vector<Input> busyMachine() {
    std::vector<Input> inputs;
    for (std::int32_t pid = 1; pid <= processCount; ++pid) {
        Input input;
        input.pid = input.responsiblePID = pid;
        input.name = "process-" + std::to_string(pid % 300);
        if (pid <= 400) {
            input.ppid = 2;
            input.isKernelThread = true;
        } else if (pid <= 800) {
            input.ppid = 1;
            input.unit = ControlGroupUnit::parse("0::/system.slice/" + input.name + ".service");
        } else {
            const std::string terminal = std::to_string(pid % 60);
            input.ppid = pid < 860 ? 1 : pid % 8 == 0 ? 801 : pid - 1;
            input.isOwn = true;
            input.path = "/home/ada/code/tools/bin/" + input.name;
            input.unit = ControlGroupUnit::parse("0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
                                                 "app-gnome-org.example.Terminal" +
                                                 terminal + "-1.scope");
        }
        inputs.push_back(std::move(input));
    }
    return inputs;
}

struct Fixture {
    Fixture() {
        for (const Input& input : inputs)
            own.push_back(AppGrouper::ownKeys(input, rules));
        for (std::size_t at = 0; at < inputs.size(); ++at)
            processes.push_back({inputs[at].pid, inputs[at].ppid, inputs[at].responsiblePID, &own[at]});
    }
    AppRules rules = AppRules::forLinux(std::make_shared<const DesktopEntryIndex>());
    std::vector<Input> inputs = busyMachine();
    std::vector<AppGrouper::OwnKeys> own;
    std::vector<AppGrouper::Process> processes;
};

const Fixture& fixture() {
    static const Fixture made;
    return made;
}

/// Once in the life of a process; here for all of them at once.
void findOwnKeys(benchmark::State& state) {
    for (auto _ : state)
        for (const Input& input : fixture().inputs)
            benchmark::DoNotOptimize(AppGrouper::ownKeys(input, fixture().rules));
}
BENCHMARK(findOwnKeys)->Unit(benchmark::kMicrosecond);

void assignKeys(benchmark::State& state) {
    const Fixture& machine = fixture();
    const std::uint64_t before = allocationsSoFar();
    for (auto _ : state)
        benchmark::DoNotOptimize(AppGrouper::assign(machine.processes, machine.rules));
    reportAllocations(state, before);
    state.SetItemsProcessed(state.iterations() * processCount);
}
BENCHMARK(assignKeys)->Unit(benchmark::kMicrosecond);

void findUnitLeaders(benchmark::State& state) {
    std::vector<UnitMember> members;
    for (const Input& input : fixture().inputs)
        members.push_back({input.pid, static_cast<std::uint64_t>(input.pid), input.unit.group});
    const std::uint64_t before = allocationsSoFar();
    for (auto _ : state)
        benchmark::DoNotOptimize(unitLeaders(members));
    reportAllocations(state, before);
    state.SetItemsProcessed(state.iterations() * processCount);
}
BENCHMARK(findUnitLeaders)->Unit(benchmark::kMicrosecond);

void sumApplications(benchmark::State& state) {
    std::vector<ProcessSnapshot> processes;
    for (const Input& input : fixture().inputs) {
        ProcessSnapshot process;
        process.pid = input.pid;
        process.memory = static_cast<std::uint64_t>(input.pid) * 4096;
        process.startTime = Date{static_cast<double>(input.pid)};
        process.appKey =
            "/usr/share/applications/org.example.Application" + std::to_string(input.pid % 200) + ".desktop";
        processes.push_back(std::move(process));
    }
    BundleInfoCache bundles("System", [](const std::string&) { return BundleFacts{{"Application"}, "id", {}}; });
    const std::uint64_t before = allocationsSoFar();
    for (auto _ : state)
        benchmark::DoNotOptimize(Aggregator::applications(processes, bundles, {}, true, true));
    reportAllocations(state, before);
    state.SetItemsProcessed(state.iterations() * processCount);
}
BENCHMARK(sumApplications)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace ostrivane
