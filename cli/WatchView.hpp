#pragma once

#include "cli/StyledText.hpp"

#include <string>

namespace ostrivane {
struct SystemSnapshot;
}

namespace ostrivane::cli {

struct WatchState;

/// What stands around the figures of the live view.
struct WatchFrame {
    std::string source; ///< "Live", or what is played
    std::string remark; ///< one sentence in the last line; may be empty
    std::string limits; ///< what the figures of the machine leave out; may be empty
    int width = 80;     ///< columns
    int height = 24;    ///< lines
};

/// The live view of one snapshot: `height` lines of at most `width` columns. What does not fit is drawn smaller first
/// and left out last: the cores shrink to one character each before anything goes.
std::vector<StyledLine> presentWatch(const SystemSnapshot& snapshot, const WatchState& state, const WatchFrame& frame);

} // namespace ostrivane::cli
