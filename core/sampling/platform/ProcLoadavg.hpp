#pragma once

#include "core/sampling/platform/Processor.hpp"

#include <optional>
#include <string_view>

/// The text of /proc/loadavg: "1.42 1.10 0.87 2/1544 42107".
namespace ostrivane::ProcLoadavg {

/// Absent unless all three are there.
std::optional<LoadAverage> parse(std::string_view text);

} // namespace ostrivane::ProcLoadavg
