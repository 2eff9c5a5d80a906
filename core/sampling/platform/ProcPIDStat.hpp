#pragma once

#include "core/sampling/platform/SystemProcesses.hpp"

#include <cstdint>
#include <optional>
#include <string_view>

namespace ostrivane {

/// What is used of /proc/PID/stat. Times are in clock ticks.
struct ProcPIDStat {
    std::string_view name; ///< as the kernel has it: any bytes, 15 of them at most for a program
    char state = '?';
    std::int32_t ppid = 0;
    std::int32_t ttyNr = 0;
    std::uint64_t flags = 0;
    std::uint64_t userTime = 0;
    std::uint64_t systemTime = 0;
    std::int64_t threads = 0;
    std::uint64_t start = 0;    ///< since boot
    std::uint64_t resident = 0; ///< pages

    /// The kernel's own thread, without a program.
    bool isKernelThread() const { return (flags & 0x0020'0000) != 0; }

    /// `ProcessInfo::Status`. A process whose first thread has ended while others run is no zombie.
    std::uint32_t status() const;

    /// Processor time and resident size in the units of a "ps", and the start. `ticksPerSecond` is the unit of the
    /// times here.
    SystemProcessTotals totals(std::uint64_t ticksPerSecond, std::uint64_t bytesPerPage) const;

    /// The text of the file. The name may hold blanks, brackets and line feeds: it ends at the last ")". Absent when
    /// the line is not whole. `name` points into `text`.
    static std::optional<ProcPIDStat> parse(std::string_view text);
};

} // namespace ostrivane
