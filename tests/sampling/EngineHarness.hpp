#pragma once

#include "core/sampling/SamplingEngine.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane {

/// A clock that stands still until a test moves it.
class ManualClock final : public Clock {
public:
    Date now() override { return time; }
    bool wait(double seconds, std::function<void()> wake) override {
        waited.push_back(seconds);
        pending = std::move(wake);
        return true;
    }
    void cancel() override { pending = nullptr; }

    bool isWaiting() const { return pending != nullptr; }
    /// Lets the wait under way pass, and moves the clock by `seconds`, or by what was asked for.
    void pass(double seconds = -1) {
        time = time + (seconds < 0 ? waited.back() : seconds);
        if (auto wake = std::exchange(pending, nullptr))
            wake();
    }

    Date time{1'000'000};
    std::vector<double> waited; ///< every wait that was asked for

private:
    std::function<void()> pending;
};

/// Collectors that note what they are asked, and answer what a test has set.
class NotingCollectors final : public Collectors {
public:
    HostInfo hostInfo() override {
        HostInfo info;
        info.userID = 1000;
        info.pageSize = 4096;
        info.physicalMemory = 1 << 30;
        info.marketingName = "Test Machine";
        info.modelIdentifier = "TM1,1";
        info.cpuBrand = "Test Processor";
        return note("hostInfo", info);
    }
    std::optional<CPUTicks> cpuTicks() override { return note("cpu", ticks); }
    std::optional<LoadAverage> loadAverage() override { return note("load", LoadAverage{1, 2, 3}); }
    std::optional<double> uptime() override { return note("uptime", 60.0); }
    std::optional<MemoryReading> memory() override { return note("memory", memoryReading); }
    GPUSnapshot gpu(bool pageShown) override {
        gpuPageShown = pageShown;
        return note("gpu", GPUSnapshot{});
    }
    std::optional<DiskCounters> diskCounters() override { return note("disk", disk); }
    std::optional<std::vector<VolumeInfo>> volumes() override { return note("volumes", mounted); }
    std::optional<InterfaceMetaMap> interfaceMetadata() override {
        return note("netmeta", std::optional(InterfaceMetaMap{}));
    }
    std::optional<std::string> primaryInterface() override {
        return note("primary", std::optional<std::string>("en0"));
    }
    std::vector<InterfaceCounter> interfaceCounters() override {
        return note("netcounters", std::vector<InterfaceCounter>{{"en0", 10, 20, true}});
    }
    NetworkSnapshot network(const std::vector<InterfaceCounter>& current, const InterfaceCounters& previous,
                            double interval, const InterfaceMetaMap&, const std::optional<std::string>&) override {
        networkIntervals.push_back(interval);
        previousInterfaces = previous.size();
        NetworkSnapshot snapshot;
        snapshot.totalIn = current.empty() ? 0 : current.front().bytesIn;
        return note("network", snapshot);
    }
    std::optional<BatteryHealth> batteryHealth() override { return note("batteryHealth", health); }
    BatterySnapshot battery(const std::optional<BatteryHealth>&) override { return note("battery", batteryState); }
    ThermalSnapshot thermal() override { return note("thermal", thermalState); }
    void sampleProcessNetwork(double) override { asked.push_back("nettop"); }
    bool processNetworkAvailable() const override { return networkAvailable; }
    void sampleSystemProcesses(double) override { asked.push_back("ps"); }
    void sampleProcessGPU(double) override { asked.push_back("gpuProcs"); }
    ProcessOutput processes(const ProcessRequest& request) override {
        requests.push_back(request);
        return note("processes", output);
    }
    SocketLists sockets(const std::vector<std::int32_t>& pids, bool includeConnections) override {
        socketPIDs = pids;
        withConnections = includeConnections;
        return note("sockets", lists);
    }
    void refreshWorkingDirectory(std::int32_t pid) override { refreshed.push_back(pid); }
    std::vector<ApplicationSnapshot> applications(const std::vector<ProcessSnapshot>& processes,
                                                  const RunningApps& apps, bool) override {
        runningApps = apps;
        attributedProcesses = processes.size();
        return note("applications", std::vector<ApplicationSnapshot>(1));
    }
    std::vector<DevServer> devServers(const ProcessOutput&, const std::vector<ListeningPort>&, double threshold,
                                      double) override {
        idleThreshold = threshold;
        return note("devServers", std::vector<DevServer>(1));
    }
    std::vector<ProjectSnapshot> projects(const std::vector<ProcessSnapshot>&, const std::vector<ListeningPort>&,
                                          const std::vector<DevServer>&) override {
        return note("projects", std::vector<ProjectSnapshot>(1));
    }
    void aiModels(const std::vector<ListeningPort>&, const std::function<void(AIModelsByPID)>& done) override {
        asked.push_back("aiModels");
        if (holdModels)
            heldModels = done;
        else
            done({{7, AIModels{{"llama"}, 1}}});
    }
    std::vector<AIWorkload> aiWorkloads(const std::vector<ProcessSnapshot>&, const std::vector<ApplicationSnapshot>&,
                                        const std::vector<ListeningPort>&, const AIModelsByPID& models) override {
        return note("aiWorkloads", std::vector<AIWorkload>(models.size()));
    }
    std::optional<DockerStatus> docker() override { return note("docker", dockerStatus); }
    std::optional<std::vector<BluetoothDevice>> bluetooth() override {
        return note("bluetooth", std::optional(std::vector<BluetoothDevice>(1)));
    }

    std::vector<std::string> asked;
    std::optional<CPUTicks> ticks = CPUTicks{{{100, 50, 850, 0}}, false};
    std::optional<MemoryReading> memoryReading = MemoryReading{};
    std::optional<DiskCounters> disk = DiskCounters{};
    std::optional<std::vector<VolumeInfo>> mounted = std::vector<VolumeInfo>(1);
    std::optional<DockerStatus> dockerStatus = DockerStatus{};
    std::optional<BatteryHealth> health = BatteryHealth{};
    BatterySnapshot batteryState;
    ThermalSnapshot thermalState;
    bool networkAvailable = true;
    ProcessOutput output;
    SocketLists lists;
    bool holdModels = false;
    std::function<void(AIModelsByPID)> heldModels;

    bool gpuPageShown = false;
    std::vector<double> networkIntervals;
    std::size_t previousInterfaces = 0;
    std::vector<ProcessRequest> requests;
    std::vector<std::int32_t> socketPIDs;
    bool withConnections = false;
    std::vector<std::int32_t> refreshed;
    std::size_t attributedProcesses = 0;
    RunningApps runningApps;
    double idleThreshold = 0;

private:
    template <class T>
    T note(const char* name, T answer) {
        asked.push_back(name);
        return answer;
    }
};

/// An engine that ticks when a test says so. Everything runs on the test's thread.
struct EngineHarness {
    EngineHarness() {
        auto ownedClock = std::make_unique<ManualClock>();
        auto ownedCollectors = std::make_unique<NotingCollectors>();
        clock = ownedClock.get();
        collectors = ownedCollectors.get();
        engine =
            std::make_unique<SamplingEngine>(context.get_executor(), std::move(ownedCollectors), std::move(ownedClock));
        engine->addConsumer(
            [this](const SharedSnapshot& snapshot, const SamplingEngine::Turn&) { snapshots.push_back(snapshot); });
    }

    /// Runs everything that can run without the clock moving.
    void settle() {
        context.restart();
        context.poll();
    }

    void start() {
        engine->start();
        settle();
    }

    /// Lets the wait pass and the next tick run. What was asked before is forgotten.
    void tick(double seconds = -1) {
        collectors->asked.clear();
        clock->pass(seconds);
        settle();
    }

    void demand(SamplingDemand demand) {
        engine->setDemand(std::move(demand));
        settle();
    }

    bool askedFor(const std::string& name) const {
        for (const std::string& one : collectors->asked)
            if (one == name)
                return true;
        return false;
    }

    boost::asio::io_context context;
    ManualClock* clock = nullptr;
    NotingCollectors* collectors = nullptr;
    std::vector<SharedSnapshot> snapshots;
    std::unique_ptr<SamplingEngine> engine; ///< goes first
};

} // namespace ostrivane
