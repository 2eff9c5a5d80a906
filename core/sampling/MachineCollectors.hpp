#pragma once

#include "core/attribution/BundleInfoCache.hpp"
#include "core/attribution/DesktopEntryIndex.hpp"
#include "core/attribution/ProjectDetector.hpp"
#include "core/sampling/Collectors.hpp"
#include "core/sampling/GPUProcessSampler.hpp"
#include "core/sampling/NettopSampler.hpp"
#include "core/sampling/ProcessCollector.hpp"
#include "core/sampling/SystemProcessSampler.hpp"
#include "core/sampling/platform/Machine.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// The collectors over one machine.
class MachineCollectors : public Collectors {
public:
    explicit MachineCollectors(std::unique_ptr<Machine> asked);

    HostInfo hostInfo() override { return host = machine->host().info(); }
    std::optional<CPUTicks> cpuTicks() override { return machine->processor().ticks(); }
    std::optional<LoadAverage> loadAverage() override { return machine->processor().loadAverage(); }
    std::optional<double> uptime() override { return machine->host().uptime(); }
    std::optional<MemoryReading> memory() override { return machine->memory().reading(); }
    GPUSnapshot gpu(bool pageShown) override;

    void sampleProcessNetwork(double now) override { networkSampler.sample(now); }
    bool processNetworkAvailable() const override { return networkSampler.isAvailable(); }
    void sampleSystemProcesses(double now) override { systemSampler.sample(now); }
    void sampleProcessGPU(double now) override { gpuSampler.sample(now); }

    ProcessOutput processes(const ProcessRequest& request) override;
    void refreshWorkingDirectory(std::int32_t pid) override;
    std::vector<ApplicationSnapshot> applications(const std::vector<ProcessSnapshot>& processes,
                                                  const RunningApps& runningApps, bool networkAvailable) override;

private:
    /// What turns the processes of a machine into records and applications.
    struct Attribution {
        Attribution(Machine& machine, const HostInfo& host, std::shared_ptr<const AppRules> rules,
                    BundleReader bundleReader);

        ProjectDetector projects;
        BundleInfoCache bundles;
        ProcessCollector processes;
    };

    Attribution& attributed();
    std::shared_ptr<const AppRules> freshRules();
    BundleFacts bundleFacts(const std::string& path);

    std::unique_ptr<Machine> machine;
    HostInfo host; ///< known once `hostInfo` was asked, which comes first
    NettopSampler networkSampler;
    SystemProcessSampler systemSampler;
    GPUProcessSampler gpuSampler;
    std::shared_ptr<const InstalledApplications> installed; ///< that the rules in force know; null on macOS
    std::shared_ptr<const DesktopEntryIndex> index;         ///< of `installed`; Linux
    std::optional<RunningApps> desktopApps;                 ///< of the last tick
    std::unique_ptr<Attribution> attribution;
};

} // namespace ostrivane
