#pragma once

#include "core/model/PidMap.hpp"
#include "core/model/SystemSnapshot.hpp"
#include "core/sampling/HostInfo.hpp"
#include "core/sampling/platform/Memory.hpp"
#include "core/sampling/platform/Processor.hpp"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ostrivane {

/// Bytes moved since boot, summed over drives.
struct DiskCounters {
    std::uint64_t read = 0;
    std::uint64_t written = 0;
};

/// Bytes through one network interface since it came up.
struct InterfaceCounter {
    std::string name;
    std::uint64_t bytesIn = 0;
    std::uint64_t bytesOut = 0;
    bool isUp = false;
};
using InterfaceCounters = std::map<std::string, InterfaceCounter>;

struct InterfaceMeta {
    std::string displayName;
    InterfaceStats::Kind kind = InterfaceStats::Kind::other;
};
using InterfaceMetaMap = std::map<std::string, InterfaceMeta>;

/// What is known of a battery but too slow to ask on a tick.
struct BatteryHealth {
    std::optional<std::int64_t> maxCapacityPercent;
    std::optional<std::string> condition;
    std::optional<std::int64_t> cycles;
};

using PIDSet = std::set<std::int32_t>;

/// What the process list is asked for on one tick.
struct ProcessRequest {
    double now = 0;               ///< seconds of the wall clock
    bool systemEntries = false;   ///< join in the last figures of processes that may not be read in detail
    bool network = false;         ///< join in the last traffic by process
    bool refreshProjects = false; ///< look working directories and projects up anew
    PIDSet listeningPIDs;
};

/// Path of an application's bundle (its key) and the process that the desktop lists for it.
using RunningApps = std::map<std::string, std::int32_t>;

struct ProcessOutput {
    std::vector<ProcessSnapshot> processes; ///< in no defined order
    std::int64_t restrictedCount = 0;
    PidMap<double> lifetimeCPUSeconds; ///< of processes whose usage could be read
    /// The applications that a desktop would list, where no desktop can be asked for its list (Linux).
    std::optional<RunningApps> desktopApps;
};

struct SocketLists {
    std::vector<ListeningPort> listening;
    std::vector<NetworkConnection> connections;
};

/// Models that a local AI runtime holds.
struct AIModels {
    std::vector<std::string> names;
    std::optional<std::uint64_t> memory; ///< bytes
};
using AIModelsByPID = std::map<std::int32_t, AIModels>;

/// The slots of a tick: what the sampling engine asks, one operation a slot, in the order of this list. An operation
/// that is not overridden answers nothing, and its record stays at its `empty` value; one that fails answers absent,
/// and what was known before stands. Called on the engine's executor only.
class Collectors {
public:
    virtual ~Collectors() = default;

    virtual HostInfo hostInfo() { return {}; } ///< asked once
    virtual std::optional<CPUTicks> cpuTicks() { return std::nullopt; }
    virtual std::optional<LoadAverage> loadAverage() { return std::nullopt; }
    virtual std::optional<double> uptime() { return std::nullopt; }
    virtual std::optional<MemoryReading> memory() { return std::nullopt; }
    /// `pageShown`: someone looks at the page on graphics.
    virtual GPUSnapshot gpu(bool /*pageShown*/) { return GPUSnapshot::empty; }
    virtual std::optional<DiskCounters> diskCounters() { return std::nullopt; }
    virtual std::optional<std::vector<VolumeInfo>> volumes() { return std::nullopt; }
    virtual std::optional<InterfaceMetaMap> interfaceMetadata() { return std::nullopt; }
    virtual std::optional<std::string> primaryInterface() { return std::nullopt; }
    virtual std::vector<InterfaceCounter> interfaceCounters() { return {}; }
    virtual NetworkSnapshot network(const std::vector<InterfaceCounter>& /*current*/,
                                    const InterfaceCounters& /*previous*/, double /*interval*/,
                                    const InterfaceMetaMap& /*meta*/, const std::optional<std::string>& /*primary*/) {
        return NetworkSnapshot::empty;
    }
    virtual std::optional<BatteryHealth> batteryHealth() { return std::nullopt; }
    virtual BatterySnapshot battery(const std::optional<BatteryHealth>& /*health*/) { return BatterySnapshot::absent; }
    virtual ThermalSnapshot thermal() { return ThermalSnapshot::empty; }

    /// The three samplers keep their last result for `processes`.
    virtual void sampleProcessNetwork(double /*now*/) {}
    virtual bool processNetworkAvailable() const { return false; }
    virtual void sampleSystemProcesses(double /*now*/) {}
    virtual void sampleProcessGPU(double /*now*/) {}

    virtual ProcessOutput processes(const ProcessRequest& /*request*/) { return {}; }
    virtual SocketLists sockets(const std::vector<std::int32_t>& /*pids*/, bool /*includeConnections*/) { return {}; }
    /// A process that no longer listens is looked at anew: its working directory and project are forgotten.
    virtual void refreshWorkingDirectory(std::int32_t /*pid*/) {}

    virtual std::vector<ApplicationSnapshot> applications(const std::vector<ProcessSnapshot>& /*processes*/,
                                                          const RunningApps& /*runningApps*/,
                                                          bool /*networkAvailable*/) {
        return {};
    }
    virtual std::vector<DevServer> devServers(const ProcessOutput& /*output*/,
                                              const std::vector<ListeningPort>& /*ports*/, double /*idleThreshold*/,
                                              double /*now*/) {
        return {};
    }
    virtual std::vector<ProjectSnapshot> projects(const std::vector<ProcessSnapshot>& /*processes*/,
                                                  const std::vector<ListeningPort>& /*ports*/,
                                                  const std::vector<DevServer>& /*servers*/) {
        return {};
    }
    /// Asks local runtimes for their models without holding up the caller; `done` may be called from any thread, once.
    virtual void aiModels(const std::vector<ListeningPort>& /*ports*/, const std::function<void(AIModelsByPID)>& done) {
        done({});
    }
    virtual std::vector<AIWorkload> aiWorkloads(const std::vector<ProcessSnapshot>& /*processes*/,
                                                const std::vector<ApplicationSnapshot>& /*applications*/,
                                                const std::vector<ListeningPort>& /*ports*/,
                                                const AIModelsByPID& /*models*/) {
        return {};
    }
    virtual std::optional<DockerStatus> docker() { return std::nullopt; }
    virtual std::optional<std::vector<BluetoothDevice>> bluetooth() { return std::nullopt; }
};

} // namespace ostrivane
