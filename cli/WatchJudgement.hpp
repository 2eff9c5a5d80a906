#pragma once

#include "cli/WatchView.hpp"

namespace ostrivane::cli {

/// What the figures mean, from its first line to its last.
std::vector<StyledLine> judgementLines(const WatchJudgement& judgement, int width);

/// The page with it, without its footer: the machine in brief, the pages, and as much of the text as fits.
std::vector<StyledLine> presentJudgement(const SystemSnapshot& snapshot, const WatchState& state,
                                         const WatchFrame& frame);

} // namespace ostrivane::cli
