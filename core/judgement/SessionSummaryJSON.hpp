#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ostrivane {

struct SessionSummary;

/// The summary as the history keeps it: the fields by their names, dates as texts in whole seconds, absent optionals
/// left out. Figures are finite. "{}" when a date is none that such a text can tell.
std::string sessionSummaryJSON(const SessionSummary& summary);

/// The summary that `json` holds; absent when a field is missing or of the wrong kind. What the summary does not know
/// is passed over.
std::optional<SessionSummary> readSessionSummary(std::string_view json);

} // namespace ostrivane
