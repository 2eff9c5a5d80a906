#include "core/sampling/MachineCollectors.hpp"

#include "core/attribution/Aggregator.hpp"
#include "core/attribution/AppRules.hpp"
#include "core/sampling/GPUCollector.hpp"

#include <utility>

namespace ostrivane {

namespace {

ProjectFiles projectFiles(Files& files) {
    return {.fileExists = [&files](const std::string& path) { return files.exists(path); },
            .listDirectory = [&files](const std::string& folder) { return files.list(folder); },
            .readFile = [&files](const std::string& path) { return files.read(path); }};
}

} // namespace

MachineCollectors::MachineCollectors(std::unique_ptr<Machine> asked)
    : machine(std::move(asked)), networkSampler(machine->sockets()), systemSampler(machine->systemProcesses()),
      gpuSampler([this] { return machine->graphics().processTimes(); }) {}

GPUSnapshot MachineCollectors::gpu(bool pageShown) {
    machine->graphics().setPageShown(pageShown);
    return GPUCollector::read(machine->graphics().accelerators(), host.cpuBrand);
}

MachineCollectors::Attribution::Attribution(Machine& machine, const HostInfo& host,
                                            std::shared_ptr<const AppRules> rules, BundleReader bundleReader)
    : projects(host.home,
               machine.platform() == Platform::Linux ? ProjectExclusions::onLinux : ProjectExclusions::onMacOS,
               projectFiles(machine.files())),
      bundles(machine.platform() == Platform::Linux ? "System" : "macOS System", std::move(bundleReader)),
      processes(machine.processes(), projects, std::move(rules),
                {.userID = host.userID,
                 .nanosPerTick = host.nanosPerTick,
                 .restrictedHidesTraffic = machine.platform() == Platform::Linux}) {}

/// Begins on the first tick, when the host is known.
MachineCollectors::Attribution& MachineCollectors::attributed() {
    if (!attribution)
        attribution = std::make_unique<Attribution>(*machine, host, freshRules(),
                                                    [this](const std::string& path) { return bundleFacts(path); });
    return *attribution;
}

std::shared_ptr<const AppRules> MachineCollectors::freshRules() {
    if (machine->platform() == Platform::macOS)
        return std::make_shared<const AppRules>(
            AppRules::forMacOS([this](const std::string& path) { return machine->files().exists(path); }, host.home));
    installed = machine->applications().installed();
    index = std::make_shared<const DesktopEntryIndex>(installed);
    return std::make_shared<const AppRules>(AppRules::forLinux(index));
}

BundleFacts MachineCollectors::bundleFacts(const std::string& path) {
    return index ? index->facts(path) : machine->applications().bundleFacts(path);
}

ProcessOutput MachineCollectors::processes(const ProcessRequest& request) {
    Attribution& known = attributed();
    if (machine->applications().installed() != installed)
        known.processes.setRules(freshRules());
    if (request.refreshProjects)
        known.projects.invalidate();
    ProcessOutput output =
        known.processes.sample(request.now,
                               {.systemEntries = request.systemEntries ? &systemSampler.last() : nullptr,
                                .network = request.network ? &networkSampler.lastRates() : nullptr,
                                .gpu = &gpuSampler.last()},
                               request.refreshProjects, request.listeningPIDs);
    desktopApps = output.desktopApps;
    return output;
}

void MachineCollectors::refreshWorkingDirectory(std::int32_t pid) {
    attributed().processes.refreshWorkingDirectory(pid);
}

std::vector<ApplicationSnapshot> MachineCollectors::applications(const std::vector<ProcessSnapshot>& processes,
                                                                 const RunningApps& runningApps,
                                                                 bool networkAvailable) {
    constexpr bool gpuAvailable = true; // its sampler always answers
    return Aggregator::applications(processes, attributed().bundles, desktopApps ? *desktopApps : runningApps,
                                    networkAvailable, gpuAvailable);
}

} // namespace ostrivane
