#pragma once

#include "core/history/SystemRow.hpp"
#include "core/model/TimedValue.hpp"

#include <optional>
#include <span>

/// How fast a battery empties, in percent of the whole battery per hour.
namespace ostrivane::BatteryDrain {

/// Over the live series of a battery that is being discharged; absent when that spans less than four minutes, and when
/// it did not fall.
std::optional<double> current(std::span<const TimedValue> percents);

/// Over rows in the order of time; absent when they tell of an hour on battery or less.
std::optional<double> typical(std::span<const SystemRow> rows);

} // namespace ostrivane::BatteryDrain
