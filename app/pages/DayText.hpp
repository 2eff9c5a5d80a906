#pragma once

#include "core/model/Date.hpp"

#include <string>

/// Dates as a list of what happened shows them, by the clock where the person is. English, as all texts.
namespace ostrivane::DayText {

/// "Today", "Yesterday", "11 November", and "11 November 2025" where the year is not that of `now`. A dash for a date
/// that no calendar reaches.
std::string day(Date date, Date now);

/// "14:21"; a dash for a date that no calendar reaches.
std::string timeOfDay(Date date);

} // namespace ostrivane::DayText
