#pragma once

#include "app/model/LiveSeries.hpp"
#include "core/history/Totals.hpp"
#include "core/judgement/Alert.hpp"
#include "core/judgement/HealthCategory.hpp"
#include "core/judgement/Insight.hpp"
#include "core/judgement/InsightContext.hpp"
#include "core/judgement/SessionRecorder.hpp"
#include "core/judgement/SessionSummary.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

struct GPUStats {
    double avg = 0; ///< a fraction
    double peak = 0;

    friend bool operator==(const GPUStats&, const GPUStats&) = default;
};

/// What every face of the program shows, as `AppModel` keeps it.
struct AppState {
    SharedSnapshot snapshot;     ///< the latest; never null
    bool hasFirstSample = false; ///< whether a snapshot with rates has come
    LiveSeries live;
    std::vector<Alert> alerts; ///< newest first, at most 300
    std::vector<Insight> insights;
    std::vector<HealthCategory> health; ///< empty until the machine was judged
    Totals todayTotals;
    Totals weekTotals;
    Totals monthTotals;
    Totals launchTotals;                   ///< since the start; without energy
    std::optional<double> cpuAverageToday; ///< a fraction
    std::optional<GPUStats> gpuStatsToday;
    std::optional<SessionRecorder> session; ///< while one is being recorded
    std::optional<SessionSummary> lastSessionSummary;
    std::int64_t sessionID = 0;                ///< the running session's row in the history; 0 until it is known
    std::optional<double> typicalDrainPerHour; ///< percent of the battery, over the past week
    std::vector<InsightContext::StorageGrowth> storageGrowth;
    std::int64_t tick = 0; ///< snapshots so far

    /// The application with that key in the present snapshot; null when there is none.
    const ApplicationSnapshot* app(const std::optional<std::string>& key) const;
    /// The processes of an application, in the order of the snapshot.
    std::vector<const ProcessSnapshot*> processes(const ApplicationSnapshot& app) const;
    /// The application's name; without it in the snapshot, the last component of the key.
    std::string appName(const std::string& key) const;
    /// "Everything looks normal", or what needs attention.
    std::string statusSummary() const;
};

} // namespace ostrivane
