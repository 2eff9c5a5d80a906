#pragma once

#include "app/widgets/Bar.hpp"
#include "app/widgets/KeyValueList.hpp"
#include "app/widgets/Legend.hpp"
#include "app/widgets/StatGrid.hpp"
#include "app/widgets/Theme.hpp"
#include "core/model/TimedValue.hpp"

#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace ostrivane {

struct AppState;
struct PlatformWords;

/// What the page of memory knows beside the state.
struct MemoryFacts {
    double interval = 2;                 ///< seconds between two readings; 0: not known yet
    std::optional<double> elevatedFor{}; ///< seconds; absent while pressure is normal
    std::optional<double> peakToday{};   ///< pressure in percent; absent where the history has no row of today
};

/// What the page of memory says. Before the first sample figures read "…".
struct MemoryText {
    QString subtitle;
    std::vector<BarPart> bar; ///< what is free is no part
    std::vector<Stat> parts;  ///< app, wired, compressed, cached, free
    std::vector<Stat> stats;  ///< used, swap used, swapped in, swapped out
    QString swapNote;         ///< where swap is no disk; empty else
    double pressure = 0;      ///< fraction
    QString pressureValue;    ///< "62%"
    Condition condition = Condition::unknown;
    QString conditionWord;
    std::vector<KeyValue> pressureFacts;
    std::vector<LegendEntry> usedLegend;
    std::vector<LegendEntry> pressureLegend; ///< without swap where there is none
};

MemoryText presentMemory(const AppState& state, const MemoryFacts& facts, const PlatformWords& words);

/// Bytes that an application's memory changed by over the hour before `now`, or over as much of it as was watched;
/// absent with less than two points in it.
std::optional<double> changeOverHour(std::span<const TimedValue> memory, double now);

/// "+4.91 GB", "−12.8 MB"; a dash when absent.
QString changeText(std::optional<double> bytes);

/// Whether memory grew so much that it stands out.
bool isStrongGrowth(std::optional<double> bytes);

/// What stands beside the table while the changes in it cover less than an hour: "Watched for 12 min so far".
/// @param seconds  absent while nothing was watched
QString watchedText(std::optional<double> seconds);

/// Bytes beside an axis: "32 GB", "15.6 GB", "0".
QString memoryAxisText(double bytes);

} // namespace ostrivane
