#pragma once

#include "core/model/Date.hpp"
#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// What any process shows of itself to anybody.
struct ProcessInfo {
    /// Raw values of `status`, whatever the system calls them.
    enum Status : std::uint32_t { unknown = 0, starting = 1, running = 2, sleeping = 3, stopped = 4, zombie = 5 };

    std::int32_t pid = 0;
    std::int32_t ppid = 0;
    std::uint32_t uid = 0;
    std::string name; ///< the short command name, repaired to valid UTF-8
    std::uint32_t status = unknown;
    Date startTime;
    bool isKernelThread = false;
    bool hasTerminal = false;
    /// `startTime` as the system counts it: a later process with the same id has another one. 0 where the system has
    /// nothing finer than `startTime` itself.
    std::uint64_t rawStart = 0;

    friend bool operator==(const ProcessInfo&, const ProcessInfo&) = default;
};
BOOST_DESCRIBE_STRUCT(ProcessInfo, (), (pid, ppid, uid, name, status, startTime, isKernelThread, hasTerminal, rawStart))
static_assert(describesEveryMember<ProcessInfo>);

/// What a process has used since it started.
struct ProcessUsage {
    std::uint64_t cpuTicks = 0;    ///< user plus system, in units of `HostInfo::nanosPerTick`
    std::uint64_t footprint = 0;   ///< bytes
    std::uint64_t diskRead = 0;    ///< bytes
    std::uint64_t diskWritten = 0; ///< bytes
    std::uint64_t energyNJ = 0;    ///< nanojoules; always 0 where the system counts none
    std::uint64_t wakeups = 0;

    friend bool operator==(const ProcessUsage&, const ProcessUsage&) = default;
};
BOOST_DESCRIBE_STRUCT(ProcessUsage, (), (cpuTicks, footprint, diskRead, diskWritten, energyNJ, wakeups))
static_assert(describesEveryMember<ProcessUsage>);

/// One process at one moment.
struct ProcessReading {
    ProcessInfo info;
    std::optional<ProcessUsage> usage; ///< absent when the system keeps it from this user
    std::optional<std::int64_t> threads;
    /// The disk totals of `usage` were read for this answer. Otherwise they are those of an earlier one, and nothing
    /// moved then; or they are hidden, and 0.
    bool diskIsFresh = true;

    friend bool operator==(const ProcessReading&, const ProcessReading&) = default;
};
BOOST_DESCRIBE_STRUCT(ProcessReading, (), (info, usage, threads, diskIsFresh))
static_assert(describesEveryMember<ProcessReading>);

/// Where a process comes from: what grouping it under an application takes beside its path. Empty on macOS.
struct ProcessOrigin {
    std::string controlGroups; ///< text of its control group file
    bool foreignRoot = false;  ///< its paths are those of another file system tree, a container's for instance
    std::optional<std::string> appImage;    ///< path of the AppImage that it was started from
    std::optional<std::string> flatpakInfo; ///< text of its sandbox's own notes; only with `foreignRoot`

    friend bool operator==(const ProcessOrigin&, const ProcessOrigin&) = default;
};
BOOST_DESCRIBE_STRUCT(ProcessOrigin, (), (controlGroups, foreignRoot, appImage, flatpakInfo))
static_assert(describesEveryMember<ProcessOrigin>);

/// What a machine can be asked about its processes. Nothing here throws. A process may be gone at any question.
class Processes {
public:
    virtual ~Processes() = default;

    /// Every process now, ascending by id; zombies included where the system describes them (macOS lists them and tells
    /// no more). Good until the next call. What did nothing since the call before may be answered from memory for a few
    /// seconds; processor time never is.
    /// Source: Linux /proc/PID/{stat,statm,io}; macOS libproc.
    virtual const std::vector<ProcessReading>& all() = 0;

    /// Path of the executable; absent for the kernel's own and where it is hidden.
    virtual std::optional<std::string> path(std::int32_t pid) = 0;

    /// The arguments, the program's name first; absent when they are hidden. Programs may rewrite them.
    virtual std::optional<std::vector<std::string>> arguments(std::int32_t pid) = 0;

    /// The process that the system holds responsible; `pid` itself when none is known.
    virtual std::int32_t responsiblePID(std::int32_t pid) = 0;

    /// Login name; the decimal uid when there is none.
    virtual std::string userName(std::uint32_t uid) = 0;

    virtual std::optional<std::string> currentDirectory(std::int32_t pid) = 0;

    virtual ProcessOrigin origin(std::int32_t pid) = 0;
};

} // namespace ostrivane
