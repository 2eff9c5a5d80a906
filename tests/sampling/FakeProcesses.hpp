#pragma once

#include "core/sampling/platform/Processes.hpp"

#include <map>

namespace ostrivane {

/// Processes that a test has set.
class FakeProcesses final : public Processes {
public:
    const std::vector<ProcessReading>& all() override { return readings; }
    std::optional<std::string> path(std::int32_t pid) override {
        ++staticReads;
        return paths.contains(pid) ? std::optional(paths[pid]) : std::nullopt;
    }
    std::optional<std::vector<std::string>> arguments(std::int32_t pid) override { return argumentLists[pid]; }
    std::int32_t responsiblePID(std::int32_t pid) override { return pid; }
    std::string userName(std::uint32_t uid) override { return "user" + std::to_string(uid); }
    std::optional<std::string> currentDirectory(std::int32_t pid) override {
        ++directoryReads;
        return directories.contains(pid) ? std::optional(directories[pid]) : std::nullopt;
    }
    ProcessOrigin origin(std::int32_t pid) override { return origins[pid]; }

    ProcessReading& add(std::int32_t pid, const std::string& name, std::uint32_t uid = 1000) {
        ProcessReading reading;
        reading.info = {
            .pid = pid, .ppid = 1, .uid = uid, .name = name, .status = ProcessInfo::sleeping, .startTime = Date{100}};
        reading.usage = ProcessUsage{.footprint = 1000};
        reading.threads = 3;
        readings.push_back(reading);
        return readings.back();
    }

    std::vector<ProcessReading> readings;
    std::map<std::int32_t, std::string> paths;
    std::map<std::int32_t, std::vector<std::string>> argumentLists;
    std::map<std::int32_t, std::string> directories;
    std::map<std::int32_t, ProcessOrigin> origins;
    int staticReads = 0;
    int directoryReads = 0;
};

} // namespace ostrivane
