#pragma once

#include <string>

/// Sums over time in words. Sums are 0 both where there was nothing and where nobody measured it.
namespace ostrivane::SumText {

inline constexpr double joulesPerWattHour = 3600;

/// Bytes that were moved, as a size. A dash for 0, which may mean that nobody measured it.
std::string amount(double bytes);

/// Watt-hours. A dash for 0: the machine tells of no energy, as nothing that runs needs none.
std::string energy(double wattHours);

/// Seconds of processor time: "12.3 s", "38 min".
std::string processorTime(double seconds);

} // namespace ostrivane::SumText
