#pragma once

#include "core/model/Described.hpp"

#include <optional>
#include <string>

namespace ostrivane {

/// One application over a period.
struct AppUsageSummary {
    std::string appKey;
    std::string name;
    std::optional<std::string> bundleID;
    double avgCPU = 0; ///< processor seconds per second of the period: cores, over all of it
    double peakMemory = 0;
    double avgMemory = 0; ///< bytes, weighted by the time its rows cover
    double energyJ = 0;
    double diskWrite = 0; ///< bytes
    double diskRead = 0;
    double netIn = 0;
    double netOut = 0;
    double activeMinutes = 0; ///< time that its rows cover

    friend bool operator==(const AppUsageSummary&, const AppUsageSummary&) = default;
};
BOOST_DESCRIBE_STRUCT(AppUsageSummary, (),
                      (appKey, name, bundleID, avgCPU, peakMemory, avgMemory, energyJ, diskWrite, diskRead, netIn,
                       netOut, activeMinutes))
static_assert(describesEveryMember<AppUsageSummary>);

} // namespace ostrivane
