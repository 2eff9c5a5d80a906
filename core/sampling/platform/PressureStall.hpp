#pragma once

#include <optional>
#include <string_view>

namespace ostrivane {

/// How much of the last ten seconds was lost to waiting for memory: what /proc/pressure/memory tells.
struct PressureStall {
    double some = 0; ///< percent of the time in which at least one task waited
    double full = 0; ///< percent of the time in which all tasks did that had something to do

    /// Absent unless both lines are whole and their figures percents.
    static std::optional<PressureStall> parse(std::string_view text);

    friend bool operator==(const PressureStall&, const PressureStall&) = default;
};

} // namespace ostrivane
