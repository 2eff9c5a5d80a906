#pragma once

#include "core/model/PidMap.hpp"
#include "core/sampling/platform/SystemProcesses.hpp"

#include <cstdint>
#include <optional>
#include <string_view>

namespace ostrivane::PSParser {

/// What macOS's "ps -axo pid=,time=,rss=" prints: a line "pid time rss" for each process, without a header. Lines that
/// cannot be read are left out.
PidMap<SystemProcessTotals> parse(std::string_view text);

/// Hundredths of a second in a time "[days-]part:part:…", each part worth 60 of the next and the last one seconds with
/// a fraction; the first may exceed 59. Days that are no number count 0. Absent when a part is no number, without any
/// part, and when the whole is negative or too large.
std::optional<std::uint64_t> parseCPUTime(std::string_view text);

} // namespace ostrivane::PSParser
