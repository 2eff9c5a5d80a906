#pragma once

#include "core/history/MinuteAccumulator.hpp"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane {

/// What the minutes of a stream of snapshots must be, found the long way: it keeps all snapshots of a minute and
/// computes each figure from them.
class NaiveMinutes {
public:
    using Name = std::pair<std::string, std::optional<std::string>>;

    /// Answers the minute that this snapshot closed, unless nothing counted in it.
    std::optional<FinishedBucket> add(const SystemSnapshot& snapshot);
    std::optional<FinishedBucket> finish();

    /// The first name of each application, and its bundle.
    std::map<std::string, Name> names;

private:
    std::vector<SystemSnapshot> minute; ///< the counted ones
    double start = 0;
};

} // namespace ostrivane
