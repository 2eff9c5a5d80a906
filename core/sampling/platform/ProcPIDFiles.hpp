#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Decoders of the smaller files in /proc/PID.
namespace ostrivane::ProcPIDFiles {

/// Pages of a process that are its own: resident less shared, from statm. Absent when the text is not whole.
std::optional<std::uint64_t> privatePages(std::string_view statm);

struct Traffic {
    std::uint64_t read = 0;    ///< bytes that came from a device
    std::uint64_t written = 0; ///< bytes that were to go to one
};
/// "read_bytes" and "write_bytes" of io. Absent unless both are there.
std::optional<Traffic> diskTraffic(std::string_view io);

/// "VmSwap" of status, in bytes; absent for a process without memory of its own.
std::optional<std::uint64_t> swapped(std::string_view status);

/// The arguments in cmdline, repaired. Programs rewrite it: one string that begins with the path of the executable and
/// a blank is split at blanks. Empty strings at the end are dropped; absent when nothing is left.
std::optional<std::vector<std::string>> arguments(std::string_view cmdline, std::string_view path);

/// The value of a variable in environ; empty where it is set to nothing, absent where it is not set.
std::optional<std::string_view> variable(std::string_view environ, std::string_view name);

/// The whole name of a command whose `name` may be cut at 15 bytes: the last component of the first argument when it
/// begins with the name, else the name as it stands.
std::string_view uncutName(std::string_view name, std::string_view cmdline);

/// The path behind /proc/PID/exe without the " (deleted)" that stands behind one whose file was replaced.
std::string_view withoutDeletedMark(std::string_view link);

} // namespace ostrivane::ProcPIDFiles
