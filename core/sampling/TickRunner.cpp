#include "core/sampling/TickRunner.hpp"

#include "core/sampling/BackgroundTrim.hpp"
#include "core/sampling/CPUCollector.hpp"
#include "core/sampling/MemoryCollector.hpp"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace ostrivane {

namespace {

/// Seconds between two readings of one cadence, by what is on screen.
namespace Every {

double volumes(const SamplingDemand& demand) {
    return demand.anyUI() ? 10 : 60;
}
constexpr double interfaceMetadata = 30;
constexpr double batteryHealth = 1800;
double processNetwork(const SamplingDemand& demand) {
    return demand.anyUI() ? 4 : 30;
}
double systemProcesses(const SamplingDemand& demand) {
    return demand.windowVisible ? 4 : 5;
}
double processGPU(const SamplingDemand& demand) {
    if (!demand.anyUI())
        return 10;
    return demand.shows("gpu") ? 2 : 4;
}
double ports(const SamplingDemand& demand) {
    const bool onPage =
        demand.shows("projects") || demand.shows("ports") || demand.shows("ai") || demand.shows("network");
    if (demand.windowVisible && onPage)
        return 4;
    return demand.anyUI() ? 10 : 20;
}
double aiModels(const SamplingDemand& demand) {
    return demand.anyUI() ? 5 : 60;
}
constexpr double docker = 5;
double bluetooth(const SamplingDemand& demand) {
    if (demand.shows("devices"))
        return 20;
    return demand.anyUI() ? 60 : 300;
}

} // namespace Every

/// On the page itself, or in the background, where history and alerts must go on seeing them. With the window on some
/// other page the models are not asked for at all.
bool wantsAIModels(const SamplingDemand& demand) {
    return demand.shows("ai") || demand.shows("projects") || !demand.anyUI();
}

bool wantsDocker(const SamplingDemand& demand) {
    return demand.shows("docker") || demand.shows("projects");
}

/// Per second; 0 for a counter that fell.
double rate(std::uint64_t now, std::uint64_t before, double seconds) {
    return now > before ? static_cast<double>(now - before) / seconds : 0;
}

/// The fresh reading, or what was known when there is none.
template <class Kept, class Fresh>
void keep(Kept& kept, std::optional<Fresh> fresh) {
    if (fresh)
        kept = *std::move(fresh);
}

void dropDuplicates(std::vector<ListeningPort>& ports) {
    std::unordered_set<std::string> seen;
    std::erase_if(ports, [&](const ListeningPort& port) { return !seen.insert(port.id()).second; });
}

PIDSet owners(const std::vector<ListeningPort>& ports) {
    PIDSet pids;
    for (const ListeningPort& port : ports)
        pids.insert(port.pid);
    return pids;
}

} // namespace

TickRunner::TickRunner(Collectors& asked) : collectors(asked) {}

bool TickRunner::begin(const Inputs& inputs) {
    if (!host || host->physicalMemory == 0) // a machine without memory has not told anything yet
        host = collectors.hostInfo();
    tick = Tick{};
    const Date now = inputs.clock.beginTick();
    tick.now = now.seconds;
    tick.snapshot = std::make_shared<SystemSnapshot>(SystemSnapshot::empty(now));
    if (tick.now < lastTick)
        cadences.clockSteppedBack(tick.now);
    // A clock that was set back leaves no interval, as on the first tick.
    tick.interval = lastTick > 0 ? std::max(tick.now - lastTick, 0.0) : 0;
    lastTick = tick.now;
    tick.demand = inputs.demand;

    readCPU();
    readMemory();
    tick.snapshot->gpu = collectors.gpu(tick.demand.anyUI() && tick.demand.shows("gpu"));
    readDisk();
    if (cadences.due("volumes", Every::volumes(tick.demand), tick.now))
        keep(volumes, collectors.volumes());
    if (cadences.due("netmeta", Every::interfaceMetadata, tick.now)) {
        keep(netMeta, collectors.interfaceMetadata());
        primaryInterface = collectors.primaryInterface();
    }
    readNetwork(inputs);
    readBattery();
    runSamplers(inputs.settings);
    readProcesses(inputs.settings);
    if (tick.portsDue)
        readSockets();
    std::unordered_set<std::int32_t> living;
    for (const ProcessSnapshot& process : tick.output.processes)
        living.insert(process.pid);
    std::erase_if(ports, [&](const ListeningPort& port) { return !living.contains(port.pid); });
    attribute(inputs);
    return wantsAIModels(tick.demand) && cadences.due("aiModels", Every::aiModels(tick.demand), tick.now);
}

void TickRunner::readCPU() {
    auto ticks = collectors.cpuTicks();
    if (!ticks)
        return; // the record stays empty, and the last good ticks stay the baseline
    CPUSnapshot& cpu = tick.snapshot->cpu;
    cpu = CPUCollector::compute(cpuTicks, *ticks, host->coreLayout, host->coreKinds);
    cpu.loadAverage = collectors.loadAverage().value_or(LoadAverage{});
    cpu.uptime = collectors.uptime().value_or(0);
    cpu.brand = host->cpuBrand;
    cpuTicks = std::move(ticks);
}

void TickRunner::readMemory() {
    const auto reading = collectors.memory();
    if (!reading)
        return;
    tick.snapshot->memory = MemoryCollector::compute(*reading, vm, tick.interval, host->pageSize, host->physicalMemory);
    vm = reading->counters;
}

void TickRunner::readDisk() {
    const auto counters = collectors.diskCounters();
    if (!counters)
        return;
    DiskSnapshot& snapshot = tick.snapshot->disk;
    snapshot.totalRead = counters->read;
    snapshot.totalWritten = counters->written;
    if (disk && disk->time < tick.now) {
        const double seconds = tick.now - disk->time;
        snapshot.readBytesPerSec = rate(counters->read, disk->counters.read, seconds);
        snapshot.writeBytesPerSec = rate(counters->written, disk->counters.written, seconds);
    }
    disk = DiskReading{*counters, tick.now};
}

void TickRunner::readNetwork(const Inputs& inputs) {
    std::vector<InterfaceCounter> counters = collectors.interfaceCounters();
    const double netNow = inputs.clock.now().seconds;
    const double interval = netTime > 0 ? std::max(netNow - netTime, 0.0) : 0;
    tick.snapshot->network = collectors.network(counters, net, interval, netMeta, primaryInterface);
    netTime = netNow;
    net.clear();
    for (InterfaceCounter& counter : counters) {
        std::string name = counter.name;
        net.insert_or_assign(std::move(name), std::move(counter));
    }
}

void TickRunner::readBattery() {
    const bool due = cadences.due("batteryHealth", Every::batteryHealth, tick.now);
    if (due || !batteryHealth)
        keep(batteryHealth, collectors.batteryHealth());
    BatterySnapshot& battery = tick.snapshot->battery;
    ThermalSnapshot& thermal = tick.snapshot->thermal;
    battery = collectors.battery(batteryHealth);
    thermal = collectors.thermal();
    if (!battery.isPresent || battery.temperatureC)
        return;
    double sum = 0;
    int count = 0;
    for (const SensorReading& sensor : thermal.sensors)
        if (sensor.group == SensorReading::Group::battery) {
            sum += sensor.celsius;
            ++count;
        }
    if (count > 0)
        battery.temperatureC = sum / count;
}

void TickRunner::runSamplers(const SamplingSettings& settings) {
    if (settings.perProcessNetwork && cadences.due("nettop", Every::processNetwork(tick.demand), tick.now))
        collectors.sampleProcessNetwork(tick.now);
    if (settings.includeSystemProcesses && tick.demand.anyUI() &&
        cadences.due("ps", Every::systemProcesses(tick.demand), tick.now))
        collectors.sampleSystemProcesses(tick.now);
    if (cadences.due("gpuProcs", Every::processGPU(tick.demand), tick.now))
        collectors.sampleProcessGPU(tick.now);
}

void TickRunner::readProcesses(const SamplingSettings& settings) {
    tick.portsDue = settings.projectDetection && cadences.due("ports", Every::ports(tick.demand), tick.now);
    tick.networkAvailable = settings.perProcessNetwork && collectors.processNetworkAvailable();
    ProcessRequest request;
    request.now = tick.now;
    request.systemEntries = settings.includeSystemProcesses && tick.demand.anyUI();
    request.network = tick.networkAvailable;
    request.refreshProjects = tick.portsDue;
    request.listeningPIDs = owners(ports);
    tick.output = collectors.processes(request);
    tick.snapshot->systemProcessMetricsIncluded = request.systemEntries;
    tick.snapshot->perProcessNetworkAvailable = tick.networkAvailable;
}

void TickRunner::readSockets() {
    const PIDSet before = owners(ports);
    std::vector<std::int32_t> own;
    for (const ProcessSnapshot& process : tick.output.processes)
        if (process.uid == host->userID && !process.isRestricted)
            own.push_back(process.pid);
    SocketLists lists = collectors.sockets(own, tick.demand.shows("network") || tick.demand.shows("ports"));
    ports = std::move(lists.listening);
    dropDuplicates(ports);
    connections = std::move(lists.connections);
    const PIDSet after = owners(ports);
    for (const std::int32_t pid : before)
        if (!after.contains(pid))
            collectors.refreshWorkingDirectory(pid);
}

void TickRunner::attribute(const Inputs& inputs) {
    SystemSnapshot& snapshot = *tick.snapshot;
    const std::vector<ProcessSnapshot>& processes = tick.output.processes;
    snapshot.applications = collectors.applications(processes, inputs.runningApps, tick.networkAvailable);
    snapshot.devServers = collectors.devServers(tick.output, ports, inputs.settings.idleServerThreshold, tick.now);
    if (inputs.settings.projectDetection)
        snapshot.projects = collectors.projects(processes, ports, snapshot.devServers);
}

SharedSnapshot TickRunner::finish(std::optional<AIModelsByPID> models) {
    if (models)
        aiModels = *std::move(models);
    SystemSnapshot& snapshot = *tick.snapshot;
    snapshot.aiWorkloads = collectors.aiWorkloads(tick.output.processes, snapshot.applications, ports, aiModels);
    if (wantsDocker(tick.demand) && cadences.due("docker", Every::docker, tick.now))
        keep(docker, collectors.docker());
    if (cadences.due("bluetooth", Every::bluetooth(tick.demand), tick.now))
        if (auto devices = collectors.bluetooth()) {
            bluetooth = *std::move(devices);
            bluetoothUpdated = Date{tick.now};
        }
    snapshot.interval = tick.interval;
    snapshot.disk.volumes = volumes;
    snapshot.ports = ports;
    snapshot.connections = connections;
    snapshot.bluetooth = bluetooth;
    snapshot.bluetoothUpdated = bluetoothUpdated;
    snapshot.docker = docker;
    snapshot.processCount = static_cast<std::int64_t>(tick.output.processes.size());
    snapshot.restrictedProcessCount = tick.output.restrictedCount;
    snapshot.macModel = host->marketingName;
    snapshot.macModelIdentifier = host->modelIdentifier;
    snapshot.processes = tick.demand.anyUI() ? std::move(tick.output.processes)
                                             : BackgroundTrim::trimmed(std::move(tick.output.processes));
    SharedSnapshot whole = std::move(tick.snapshot);
    tick = Tick{};
    return whole;
}

} // namespace ostrivane
