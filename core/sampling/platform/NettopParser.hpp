#pragma once

#include "core/model/PidMap.hpp"
#include "core/sampling/platform/Sockets.hpp"

#include <string_view>

namespace ostrivane::NettopParser {

/// What macOS's "nettop -P -L 1 -x -n -J bytes_in,bytes_out" prints: a header, then a line "name.pid,in,out," each,
/// where names hold blanks, points and rarely commas. Lines of one process are added together; lines that cannot be
/// read are left out.
PidMap<TrafficTotals> parse(std::string_view text);

} // namespace ostrivane::NettopParser
