#pragma once

#include "core/model/Date.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// What insights need to know beyond the snapshot.
struct InsightContext {
    struct StorageGrowth {
        std::string path;
        std::string name;
        std::int64_t bytes = 0;
        Date since;
    };

    std::optional<double> pressureElevatedFor; ///< seconds since memory pressure left `normal`
    std::optional<double> currentDrainPerHour; ///< percent of the battery, now
    std::optional<double> typicalDrainPerHour; ///< percent of the battery, over the past week
    std::vector<StorageGrowth> storageGrowth;
    std::optional<double> cpuAverage5m; ///< load of the whole machine, a fraction
};

} // namespace ostrivane
