#pragma once

#include "app/widgets/ChartData.hpp"
#include "app/widgets/Legend.hpp"
#include "core/history/AppRow.hpp"
#include "core/history/HistoryRange.hpp"

#include <QString>

#include <array>
#include <span>
#include <vector>

namespace ostrivane {

/// How far back the history of one application can be shown.
inline constexpr std::array appHistoryRanges{HistoryRange::hour1, HistoryRange::hours12, HistoryRange::days7,
                                             HistoryRange::days30};

struct AppHistoryText {
    QString cpuTitle;                 ///< "CPU over 12 hours"
    QString memoryTitle;              ///< "Memory over 12 hours"
    QString note;                     ///< stands in place of the charts; empty: they are shown
    std::vector<LegendEntry> figures; ///< mean processor use, highest memory and energy; empty without charts
};

/// @param rows  of the range, oldest first; null while they are not yet known
AppHistoryText presentAppHistory(const std::vector<AppRow>* rows, HistoryRange range);

/// Cores over time.
HistoryLine appCPULine(std::span<const AppRow> rows);
/// Bytes over time.
HistoryLine appMemoryLine(std::span<const AppRow> rows);

} // namespace ostrivane
