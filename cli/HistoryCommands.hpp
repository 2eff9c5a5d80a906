#pragma once

#include "cli/HistoryPlace.hpp"
#include "cli/HistoryReader.hpp"
#include "core/history/HistoryRange.hpp"

#include <string>

namespace CLI {
class App;
}

namespace ostrivane::cli {

/// The subcommands of "history" that have a file of their own. Each works as those of `Commands.hpp` do.
void addHistoryExportCommand(CLI::App& history, int& status);
void addHistoryClearCommand(CLI::App& history, int& status);

/// Adds "--range", whose text becomes one of those of `HistoryRange`.
void addRangeOption(CLI::App& command, std::string& range);

/// The rows of the last `range` before `now`.
std::vector<SystemRow> rowsOf(HistoryReader& history, HistoryRange range, Date now);

/// The time of day on this machine.
Date currentDate();

} // namespace ostrivane::cli
