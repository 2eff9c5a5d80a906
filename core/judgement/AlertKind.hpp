#pragma once

#include "core/model/RawValue.hpp"

#include <array>
#include <string_view>

namespace ostrivane {

/// What an alert can be about. The raw values stand in settings and in the history.
enum class AlertKind {
    sustainedCPU,
    excessiveMemory,
    memoryGrowth,
    memoryPressure,
    swapGrowth,
    diskWrite,
    networkHeavy,
    batteryDrain,
    highTemperature,
    thermalPressure,
    unusualCPU,
    idleServer,
    lowStorage
};
constexpr std::array<RawText<AlertKind>, 13> rawTexts(EnumTag<AlertKind>) {
    return {{{AlertKind::sustainedCPU, "sustainedCPU"},
             {AlertKind::excessiveMemory, "excessiveMemory"},
             {AlertKind::memoryGrowth, "memoryGrowth"},
             {AlertKind::memoryPressure, "memoryPressure"},
             {AlertKind::swapGrowth, "swapGrowth"},
             {AlertKind::diskWrite, "diskWrite"},
             {AlertKind::networkHeavy, "networkHeavy"},
             {AlertKind::batteryDrain, "batteryDrain"},
             {AlertKind::highTemperature, "highTemperature"},
             {AlertKind::thermalPressure, "thermalPressure"},
             {AlertKind::unusualCPU, "unusualCPU"},
             {AlertKind::idleServer, "idleServer"},
             {AlertKind::lowStorage, "lowStorage"}}};
}
inline constexpr std::size_t alertKindCount = rawTexts(EnumTag<AlertKind>{}).size();

/// "Sustained high CPU".
std::string_view title(AlertKind kind);

/// What sort of test it is: "Duration", "Threshold" or "Anomaly".
std::string_view kindLabel(AlertKind kind);

/// The unit of a rule's threshold, as "% of a core".
std::string_view thresholdUnit(AlertKind kind);

} // namespace ostrivane
