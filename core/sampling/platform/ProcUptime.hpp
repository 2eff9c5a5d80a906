#pragma once

#include <optional>
#include <string_view>

/// The text of /proc/uptime: seconds since boot, the time asleep included, and the idle seconds of all cores.
namespace ostrivane::ProcUptime {

/// Seconds since boot.
std::optional<double> parse(std::string_view text);

} // namespace ostrivane::ProcUptime
