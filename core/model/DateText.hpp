#pragma once

#include "core/model/Date.hpp"

#include <optional>
#include <string>
#include <string_view>

/// Dates as files write them: ISO 8601 in UTC, as "2026-11-21T16:00:00Z".
namespace ostrivane::DateText {

/// In whole seconds, the fraction cut off. Absent for a date outside the years 0 to 9999.
std::optional<std::string> iso8601(Date date);

/// The date that `text` is; its seconds may have a fraction. Absent for any other text.
std::optional<Date> fromISO8601(std::string_view text);

} // namespace ostrivane::DateText
