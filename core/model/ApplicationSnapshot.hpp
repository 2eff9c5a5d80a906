#pragma once

#include "core/model/Date.hpp"
#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// The processes of one application, summed. Its identity is `key`.
struct ApplicationSnapshot {
    std::string key;
    std::string name;
    std::optional<std::string> bundleID;
    std::optional<std::string> bundlePath;
    std::vector<std::int32_t> pids;
    double cpu = 0;           ///< cores
    std::uint64_t memory = 0; ///< bytes
    double diskReadRate = 0;  ///< bytes per second
    double diskWriteRate = 0; ///< bytes per second
    std::optional<double> netInRate;
    std::optional<double> netOutRate;
    std::optional<double> powerW;
    std::optional<double> gpu;
    std::int64_t threads = 0;
    std::optional<Date> startTime; ///< of its earliest process
    bool isRunningApp = false;     ///< the desktop lists it as running
    bool isSystem = false;
    bool hasRestricted = false;
    std::optional<std::int32_t> mainPID;

    std::int64_t processCount() const { return static_cast<std::int64_t>(pids.size()); }

    friend bool operator==(const ApplicationSnapshot&, const ApplicationSnapshot&) = default;
};
BOOST_DESCRIBE_STRUCT(ApplicationSnapshot, (),
                      (key, name, bundleID, bundlePath, pids, cpu, memory, diskReadRate, diskWriteRate, netInRate,
                       netOutRate, powerW, gpu, threads, startTime, isRunningApp, isSystem, hasRestricted, mainPID))
static_assert(describesEveryMember<ApplicationSnapshot>);

} // namespace ostrivane
