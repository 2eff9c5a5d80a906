#pragma once

#include "cli/WatchView.hpp"

namespace ostrivane::cli {

/// The machine in brief and the pages, as many lines as such a page has room for.
std::vector<StyledLine> presentHeader(const SystemSnapshot& snapshot, const WatchState& state, const WatchFrame& frame);

/// A page with a table, without its footer: the machine in brief, the pages, the rows, and what is selected.
std::vector<StyledLine> presentTable(const SystemSnapshot& snapshot, const WatchState& state, const WatchFrame& frame);

/// The last line of every page: the keys that do something there, or the filter while it is typed.
StyledLine presentFooter(const WatchState& state, const WatchFrame& frame);

} // namespace ostrivane::cli
