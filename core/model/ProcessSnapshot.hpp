#pragma once

#include "core/model/Date.hpp"
#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace ostrivane {

/// One process over one tick. Its identity is `pid`.
struct ProcessSnapshot {
    std::int32_t pid = 0;
    std::int32_t ppid = 0;
    std::int32_t responsiblePID = 0; ///< whom the system holds responsible; `pid` itself when none is known
    std::string name;                ///< display name
    std::optional<std::string> path; ///< executable
    std::string user;                ///< owner's login name, or the decimal uid
    std::uint32_t uid = 0;
    std::optional<Date> startTime;
    std::string state = "Unknown"; ///< "Starting", "Running", "Sleeping", "Stopped" or "Unknown"
    std::optional<std::int64_t> threads;
    double cpu = 0;           ///< cores: 1.0 is one core fully busy
    std::uint64_t memory = 0; ///< bytes: footprint, or resident size with `memoryIsRSS`
    bool memoryIsRSS = false;
    double diskReadRate = 0;               ///< bytes per second
    double diskWriteRate = 0;              ///< bytes per second
    std::uint64_t diskReadTotal = 0;       ///< bytes over its life
    std::uint64_t diskWriteTotal = 0;      ///< bytes over its life
    std::optional<double> netInRate;       ///< bytes per second; absent without per-process network figures
    std::optional<double> netOutRate;      ///< bytes per second; absent without per-process network figures
    std::optional<double> powerW;          ///< absent when the system reports no energy for it
    std::optional<double> gpu;             ///< fraction of the graphics processor
    std::string appKey = "system";         ///< key of its application; this one when unassigned
    std::optional<std::string> projectKey; ///< project root
    bool isRestricted = false;             ///< the system hid its usage
    bool isDevProcess = false;             ///< development tooling
    std::optional<std::string> devKind;
    std::optional<std::string> commandLine; ///< arguments joined by one blank; the user's own processes only
    std::optional<std::string> cwd;

    /// Seconds from its start to `now`; absent without a start time.
    std::optional<double> uptime(Date now) const;

    /// `cpu` and `memory`; absent where they are no readings. What a restricted process shows came from a tool of the
    /// system, which tells resident sizes: without these its zeros are guesses.
    std::optional<double> knownCPU() const;
    std::optional<std::uint64_t> knownMemory() const;

    friend bool operator==(const ProcessSnapshot&, const ProcessSnapshot&) = default;
};
BOOST_DESCRIBE_STRUCT(ProcessSnapshot, (),
                      (pid, ppid, responsiblePID, name, path, user, uid, startTime, state, threads, cpu, memory,
                       memoryIsRSS, diskReadRate, diskWriteRate, diskReadTotal, diskWriteTotal, netInRate, netOutRate,
                       powerW, gpu, appKey, projectKey, isRestricted, isDevProcess, devKind, commandLine, cwd))
static_assert(describesEveryMember<ProcessSnapshot>);

} // namespace ostrivane
