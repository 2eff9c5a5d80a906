#pragma once

#include "core/model/Date.hpp"
#include "core/sampling/platform/Processes.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// Decoders of what the macOS kernel tells of one process. Records may be longer than known today; shorter ones and
/// impossible values give nothing. Texts come out as valid UTF-8.
namespace ostrivane::ProcessRecords {

/// `proc_bsdinfo`, of processes of the same user. The name is the long one where there is one.
std::optional<ProcessInfo> info(std::span<const std::byte> record);

/// `proc_bsdshortinfo`, of any process. It knows neither the start time, which stays 0, nor the terminal.
std::optional<ProcessInfo> shortInfo(std::span<const std::byte> record);

/// `kinfo_proc`.
std::optional<Date> startTime(std::span<const std::byte> record);

/// `rusage_info_v6`. Its times are Mach ticks.
std::optional<ProcessUsage> usage(std::span<const std::byte> record);

/// `proc_taskinfo`.
std::optional<std::int64_t> threads(std::span<const std::byte> record);

/// `proc_vnodepathinfo`: the working directory; absent when it is empty, which it may be.
std::optional<std::string> currentDirectory(std::span<const std::byte> record);

/// The value of `KERN_PROCARGS2`: the arguments, the program's name first. Absent with fewer than 5 bytes. As many as
/// the process is said to have, or as there are: a process may have written over them.
std::optional<std::vector<std::string>> arguments(std::span<const std::byte> value);

} // namespace ostrivane::ProcessRecords
