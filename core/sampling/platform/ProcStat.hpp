#pragma once

#include "core/sampling/platform/Processor.hpp"

#include <cstddef>
#include <optional>
#include <string_view>

/// The text of /proc/stat.
namespace ostrivane::ProcStat {

/// Which cores a reading may have.
struct Cores {
    std::size_t seen = 0;  ///< cores of earlier readings: the reading has at least as many
    std::size_t limit = 0; ///< one above the highest core that the machine can have: lines of others are not believed
};

/// The counters of each core, by the number in its line's name: a core that is switched off has no line and stands as
/// four zeros, so that those behind it keep their index. Absent when the text names no core.
std::optional<CPUTicks> parse(std::string_view text, Cores cores);

} // namespace ostrivane::ProcStat
