#pragma once

#include "core/sampling/platform/Machine.hpp"
#include "tests/sampling/FakeProcesses.hpp"

#include <set>

namespace ostrivane {

/// A machine that answers what a test has set.
class FakeMachine final : public Machine,
                          Host,
                          Processor,
                          Memory,
                          Graphics,
                          SystemProcesses,
                          Sockets,
                          Applications,
                          Files {
public:
    Platform platform() const override { return Platform::macOS; }
    Host& host() override { return *this; }
    Processor& processor() override { return *this; }
    Memory& memory() override { return *this; }
    Graphics& graphics() override { return *this; }
    Processes& processes() override { return processList; }
    SystemProcesses& systemProcesses() override { return *this; }
    Sockets& sockets() override { return *this; }
    Applications& applications() override { return *this; }
    Files& files() override { return *this; }

    HostInfo info() override { return hostInfo; }
    std::optional<double> uptime() override { return upSeconds; }
    std::optional<CPUTicks> ticks() override { return cpuTicks; }
    std::optional<LoadAverage> loadAverage() override { return load; }
    std::optional<MemoryReading> reading() override { return memoryReading; }
    std::vector<AcceleratorReading> accelerators() override { return chips; }
    PidMap<std::uint64_t> processTimes() override { return graphicsTimes; }
    void setPageShown(bool shown) override { graphicsPageShown = shown; }
    std::optional<PidMap<SystemProcessTotals>> totals() override { return systemTotals; }
    std::optional<PidMap<TrafficTotals>> traffic() override { return trafficTotals; }
    std::shared_ptr<const InstalledApplications> installed() override { return nullptr; }
    BundleFacts bundleFacts(const std::string& path) override { return bundles[path]; }
    bool exists(const std::string& path) override { return existing.contains(path); }
    std::vector<std::string> list(const std::string&) override { return {}; }
    std::optional<std::string> read(const std::string&) override { return std::nullopt; }

    HostInfo hostInfo;
    std::optional<double> upSeconds;
    std::optional<CPUTicks> cpuTicks;
    std::optional<LoadAverage> load;
    std::optional<MemoryReading> memoryReading;
    std::vector<AcceleratorReading> chips;
    PidMap<std::uint64_t> graphicsTimes;
    bool graphicsPageShown = false;
    FakeProcesses processList;
    std::optional<PidMap<SystemProcessTotals>> systemTotals;
    std::optional<PidMap<TrafficTotals>> trafficTotals;
    std::map<std::string, BundleFacts> bundles;
    std::set<std::string> existing;
};

} // namespace ostrivane
