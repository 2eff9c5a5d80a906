#pragma once

#include "app/widgets/KeyValueList.hpp"
#include "app/widgets/Legend.hpp"

#include <QString>

#include <optional>
#include <vector>

namespace ostrivane {

struct AppState;

/// What the page of the graphics processor says. Before the first sample figures read "…".
struct GPUText {
    QString subtitle; ///< the processor's name
    /// Whether there is anything to show: the load is known, or was within the last five minutes.
    bool isAvailable = true;
    QString usage;
    std::vector<LegendEntry> engines; ///< renderer and tiler, those that are known
    std::vector<KeyValue> today;
    std::vector<KeyValue> memory; ///< those that are known
    std::vector<KeyValue> temperature;
    bool hasTemperature = false; ///< whether a chart of it has anything to show
    bool hasApplications = false;
    QString applicationsNote; ///< why there are no figures by application; empty when there are
};

GPUText presentGPU(const AppState& state);

/// "12%", "5.1%", a dash when absent.
QString gpuShareText(std::optional<double> fraction);

} // namespace ostrivane
