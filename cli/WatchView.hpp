#pragma once

#include "cli/StyledText.hpp"
#include "core/judgement/Alert.hpp"
#include "core/judgement/HealthCategory.hpp"
#include "core/judgement/Insight.hpp"

#include <string>
#include <vector>

namespace ostrivane {
struct SystemSnapshot;
}

namespace ostrivane::cli {

struct WatchState;

/// What the figures mean.
struct WatchJudgement {
    std::string summary;                ///< what all of it comes to
    std::vector<HealthCategory> health; ///< empty until the machine was judged
    std::vector<Insight> insights;
    std::vector<Alert> alerts; ///< the newest first
};

/// What stands around the figures of the live view.
struct WatchFrame {
    std::string source; ///< "Live", or what is played
    std::string remark; ///< one sentence in the last line; may be empty
    std::string limits; ///< what the figures of the machine leave out; may be empty
    WatchJudgement judgement{};
    int width = 80;  ///< columns
    int height = 24; ///< lines
};

/// The live view of one snapshot: `height` lines of at most `width` columns. What does not fit is drawn smaller first
/// and left out last: the cores shrink to one character each before anything goes.
std::vector<StyledLine> presentWatch(const SystemSnapshot& snapshot, const WatchState& state, const WatchFrame& frame);

} // namespace ostrivane::cli
