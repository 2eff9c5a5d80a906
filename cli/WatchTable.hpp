#pragma once

#include "cli/WatchView.hpp"

namespace ostrivane::cli {

/// A page with a table, without its footer: the machine in brief, the pages, the rows, and what is selected.
std::vector<StyledLine> presentTable(const SystemSnapshot& snapshot, const WatchState& state, const WatchFrame& frame);

/// The last line of every page: the keys that do something there, or the filter while it is typed.
StyledLine presentFooter(const WatchState& state, const WatchFrame& frame);

} // namespace ostrivane::cli
