#pragma once

#include "core/model/Date.hpp"

#include <optional>

namespace ostrivane {

/// Seconds since boot where the system tells when it booted: `now` less `bootTime`, so the time asleep counts. A boot
/// time that is missing or not yet past (the wall clock was set back) leaves `awakeSeconds`, what a clock that stops in
/// sleep shows. Absent when that says nothing either.
std::optional<double> uptimeSince(std::optional<Date> bootTime, Date now, std::optional<double> awakeSeconds);

} // namespace ostrivane
