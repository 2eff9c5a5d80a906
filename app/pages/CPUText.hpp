#pragma once

#include "app/widgets/CoreGrid.hpp"
#include "app/widgets/KeyValueList.hpp"
#include "app/widgets/Legend.hpp"

#include <QString>

#include <vector>

namespace ostrivane {

struct AppState;
struct CPUSnapshot;
struct PlatformWords;

/// What the page of the processor says. Before the first sample figures read "…".
struct CPUText {
    QString subtitle; ///< "Name · 8 performance and 4 efficiency cores"
    QString usage;
    std::vector<LegendEntry> parts; ///< user, system, idle
    std::vector<KeyValue> averages;
    std::vector<KeyValue> loads;
    std::vector<KeyValue> machine;
    QString note;                    ///< why a figure is missing; empty when none is
    std::vector<LegendEntry> groups; ///< kinds of cores with their means
    std::vector<CoreCell> cores;
};

CPUText presentCPU(const AppState& state, const PlatformWords& words);

/// "8 performance and 4 efficiency cores", "16 cores"; empty when no core is known.
QString coresText(const CPUSnapshot& cpu);

/// How many cores stand in a row.
int coresPerRow(std::size_t cores, bool narrow);

} // namespace ostrivane
