#pragma once

#include "core/sampling/Cadences.hpp"
#include "core/sampling/Collectors.hpp"
#include "core/sampling/SamplingDemand.hpp"
#include "core/sampling/SamplingSettings.hpp"
#include "core/sampling/platform/Clock.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// Runs one tick over the collectors, in a fixed order, and keeps what the next one needs: the previous counters and
/// the last results of the costly readings. A tick has two halves, because local AI runtimes are asked in between
/// without holding up the executor.
class TickRunner {
public:
    explicit TickRunner(Collectors& asked);

    struct Inputs {
        const SamplingDemand& demand;
        const SamplingSettings& settings;
        const RunningApps& runningApps;
        Clock& clock;
    };

    /// From the clock to attribution. Answers whether the models of AI runtimes are to be asked for before `finish`.
    bool begin(const Inputs& inputs);

    /// The listening sockets that the question for models is about.
    const std::vector<ListeningPort>& listeningPorts() const { return ports; }

    /// From AI workloads to the whole snapshot. `models` is absent when they were not asked for: the last ones stand.
    SharedSnapshot finish(std::optional<AIModelsByPID> models);

    /// Sockets and projects are read anew on the next tick.
    void expirePorts() { cadences.expire("ports"); }

private:
    void readCPU();
    void readMemory();
    void readDisk();
    void readNetwork(const Inputs& inputs);
    void readBattery();
    void runSamplers(const SamplingSettings& settings);
    void readProcesses(const SamplingSettings& settings);
    void readSockets();
    void attribute(const Inputs& inputs);

    /// What belongs to the tick under way only.
    struct Tick {
        double now = 0; ///< seconds of the wall clock
        double interval = 0;
        SamplingDemand demand; ///< as it stood when the tick began
        bool networkAvailable = false;
        bool portsDue = false;
        ProcessOutput output;
        std::shared_ptr<SystemSnapshot> snapshot;
    };

    struct DiskReading {
        DiskCounters counters;
        double time = 0;
    };

    Collectors& collectors;
    std::optional<HostInfo> host;
    Cadences cadences;
    Tick tick;

    std::optional<CPUTicks> cpuTicks;
    std::optional<VMCounters> vm;
    std::optional<DiskReading> disk;
    InterfaceCounters net;
    double netTime = 0;
    double lastTick = 0;

    std::optional<BatteryHealth> batteryHealth;
    std::vector<VolumeInfo> volumes;
    InterfaceMetaMap netMeta;
    std::optional<std::string> primaryInterface;
    std::vector<ListeningPort> ports;
    std::vector<NetworkConnection> connections;
    std::vector<BluetoothDevice> bluetooth;
    std::optional<Date> bluetoothUpdated;
    std::optional<DockerStatus> docker;
    AIModelsByPID aiModels;
};

} // namespace ostrivane
