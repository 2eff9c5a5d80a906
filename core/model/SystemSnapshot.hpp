#pragma once

#include "core/model/AIWorkload.hpp"
#include "core/model/ApplicationSnapshot.hpp"
#include "core/model/BatterySnapshot.hpp"
#include "core/model/BluetoothDevice.hpp"
#include "core/model/CPUSnapshot.hpp"
#include "core/model/Date.hpp"
#include "core/model/DevServer.hpp"
#include "core/model/DiskSnapshot.hpp"
#include "core/model/DockerStatus.hpp"
#include "core/model/GPUSnapshot.hpp"
#include "core/model/ListeningPort.hpp"
#include "core/model/MemorySnapshot.hpp"
#include "core/model/NetworkConnection.hpp"
#include "core/model/NetworkSnapshot.hpp"
#include "core/model/ProcessSnapshot.hpp"
#include "core/model/ProjectSnapshot.hpp"
#include "core/model/ThermalSnapshot.hpp"

#include <memory>

namespace ostrivane {

/// Everything known about the machine at one tick. Built once, then shared as `std::shared_ptr<const SystemSnapshot>`.
/// An absent optional means that the value was not obtained, never zero.
struct SystemSnapshot {
    Date timestamp;      ///< when the tick began
    double interval = 0; ///< seconds since the previous tick began; 0 on the first
    CPUSnapshot cpu;
    MemorySnapshot memory;
    GPUSnapshot gpu;
    DiskSnapshot disk;
    NetworkSnapshot network;
    BatterySnapshot battery;
    ThermalSnapshot thermal;
    std::vector<ProcessSnapshot> processes; ///< in no defined order; with no interface visible only those of note
    std::vector<ApplicationSnapshot> applications;
    std::vector<ProjectSnapshot> projects; ///< empty when project detection is off
    std::vector<ListeningPort> ports;      ///< last known, of live processes
    std::vector<DevServer> devServers;
    std::vector<AIWorkload> aiWorkloads;
    std::vector<NetworkConnection> connections; ///< last known
    std::vector<BluetoothDevice> bluetooth;     ///< last known
    std::optional<Date> bluetoothUpdated;       ///< when `bluetooth` was last read; absent before the first time
    std::optional<DockerStatus> docker;         ///< absent until the first probe
    std::int64_t processCount = 0;              ///< processes seen on this tick, before any were left out
    std::int64_t restrictedProcessCount = 0;    ///< of those, how many could not be read in detail
    bool systemProcessMetricsIncluded = false;
    bool perProcessNetworkAvailable = false;
    std::string macModel = "Mac";   ///< marketing name of the machine
    std::string macModelIdentifier; ///< hardware model identifier

    /// Watts of all applications that report any; absent when none does.
    std::optional<double> totalAppPower() const;

    /// Watts of the whole machine: as the battery tells, else as its sensors do.
    std::optional<double> systemPowerW() const;

    /// A snapshot in which nothing has been read yet.
    static SystemSnapshot empty(Date now);
    friend bool operator==(const SystemSnapshot&, const SystemSnapshot&) = default;
};
BOOST_DESCRIBE_STRUCT(SystemSnapshot, (),
                      (timestamp, interval, cpu, memory, gpu, disk, network, battery, thermal, processes, applications,
                       projects, ports, devServers, aiWorkloads, connections, bluetooth, bluetoothUpdated, docker,
                       processCount, restrictedProcessCount, systemProcessMetricsIncluded, perProcessNetworkAvailable,
                       macModel, macModelIdentifier))
static_assert(describesEveryMember<SystemSnapshot>);

using SharedSnapshot = std::shared_ptr<const SystemSnapshot>;

} // namespace ostrivane
