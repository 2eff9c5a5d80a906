#pragma once

#include "core/model/Date.hpp"

#include <string>

/// Instants as a person names them, by the local clock. English in every locale; a dash for what no calendar reaches.
namespace ostrivane::DateWords {

/// "09:12".
std::string clock(Date date);

/// "14 October"; with the year where it is not that of `now`: "14 October 2025".
std::string day(Date date, Date now);

/// "Today", "Yesterday", or the day's date.
std::string nearDay(Date date, Date now);

/// "Today, 09:12".
std::string moment(Date date, Date now);

/// "Today, 09:12 to 11:53"; the end's day is named where it is another one.
std::string span(Date from, Date to, Date now);

} // namespace ostrivane::DateWords
