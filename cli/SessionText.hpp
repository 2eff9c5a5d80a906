#pragma once

#include "core/history/StoredSession.hpp"
#include "core/judgement/SessionSummary.hpp"

#include <optional>
#include <string>
#include <vector>

/// Recorded sessions, for a person to read. Everything is safe to print.
namespace ostrivane::cli {

/// What a session cost. What nobody measured is left out.
std::string summaryText(const SessionSummary& summary, std::optional<int> width);

/// A session of the history: its summary, or why there is none.
std::string storedSessionText(const StoredSession& session, std::optional<int> width);

/// A table with a line for each.
std::string sessionsText(const std::vector<StoredSession>& sessions, std::optional<int> width);

} // namespace ostrivane::cli
