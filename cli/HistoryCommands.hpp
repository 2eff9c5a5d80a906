#pragma once

#include "cli/HistoryPlace.hpp"
#include "cli/HistoryReader.hpp"
#include "core/history/HistoryRange.hpp"

#include <cstdint>
#include <string>

namespace CLI {
class App;
}

namespace ostrivane::cli {

/// The subcommands of "history" that have a file of their own. Each works as those of `Commands.hpp` do.
void addHistoryExportCommand(CLI::App& history, int& status);
void addHistoryClearCommand(CLI::App& history, int& status);

/// Lists the alerts, or the sessions, the newest first; answers the exit status.
int printAlerts(std::int64_t limit, bool json);
int printSessions(bool json);

/// Adds "--limit".
inline constexpr std::int64_t defaultListLimit = 20;
void addLimitOption(CLI::App& command, std::int64_t& limit);

/// Adds "--range", whose text becomes one of those of `HistoryRange`.
void addRangeOption(CLI::App& command, std::string& range);

/// The rows of the last `range` before `now`.
std::vector<SystemRow> rowsOf(HistoryReader& history, HistoryRange range, Date now);

/// The time of day on this machine.
Date currentDate();

} // namespace ostrivane::cli
