#pragma once

#include "core/model/SystemSnapshot.hpp"

#include <string>
#include <utility>

namespace ostrivane {

constexpr std::uint64_t mebibyte = 1ULL << 20;
constexpr std::uint64_t gibibyte = 1ULL << 30;

/// A snapshot in which nothing stands out, 2 seconds after the one before.
inline SystemSnapshot quietSnapshot() {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{1'700'000'000});
    snapshot.interval = 2;
    snapshot.systemProcessMetricsIncluded = true;
    return snapshot;
}

inline ApplicationSnapshot application(std::string name, double cpu, std::uint64_t memory = 0) {
    ApplicationSnapshot app;
    app.key = "exe:" + name;
    app.name = std::move(name);
    app.cpu = cpu;
    app.memory = memory;
    return app;
}

/// One that the desktop lists as running.
inline ApplicationSnapshot openApplication(std::string name, double cpu, std::uint64_t memory = 0) {
    ApplicationSnapshot app = application(std::move(name), cpu, memory);
    app.isRunningApp = true;
    return app;
}

inline ApplicationSnapshot systemApplication(double cpu, std::uint64_t memory = 0) {
    ApplicationSnapshot app = application("System", cpu, memory);
    app.key = "system";
    return app;
}

inline VolumeInfo rootVolume(std::uint64_t available, std::uint64_t total) {
    VolumeInfo volume;
    volume.name = "Disk";
    volume.mountPoint = "/";
    volume.available = available;
    volume.total = total;
    volume.isRoot = true;
    return volume;
}

inline FanReading fan(double rpm) {
    FanReading reading;
    reading.rpm = rpm;
    return reading;
}

} // namespace ostrivane
