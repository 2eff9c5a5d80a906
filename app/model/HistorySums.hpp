#pragma once

#include "app/model/AppState.hpp"

#include <functional>
#include <optional>

namespace ostrivane {

class HistoryStore;

/// What the faces of the program show of the past.
struct HistorySums {
    Totals today;
    Totals week;
    Totals month;
    std::optional<double> cpuAverageToday;
    std::optional<GPUStats> gpuStatsToday;
    std::optional<double> typicalDrainPerHour;
};

/// Asks the store, question by question. The answer comes on its strand, absent when one of them could not be answered:
/// what was known then still stands.
void askHistorySums(HistoryStore& history, const std::function<Date()>& now,
                    std::function<void(std::optional<HistorySums>)> answer);

} // namespace ostrivane
