#include "core/judgement/AlertKind.hpp"

namespace ostrivane {

namespace {

struct KindTexts {
    std::string_view title;
    std::string_view kindLabel;
    std::string_view thresholdUnit;
};

constexpr KindTexts textsOf(AlertKind kind) {
    switch (kind) {
    case AlertKind::sustainedCPU:
        return {"Sustained high CPU", "Duration", "% of a core"};
    case AlertKind::excessiveMemory:
        return {"Excessive memory", "Threshold", "% of RAM"};
    case AlertKind::memoryGrowth:
        return {"Memory keeps growing", "Anomaly", "GB"};
    case AlertKind::memoryPressure:
        return {"Memory pressure", "Duration", "level (2 = elevated, 4 = critical)"};
    case AlertKind::swapGrowth:
        return {"Swap growth", "Anomaly", "GB"};
    case AlertKind::diskWrite:
        return {"Heavy disk writes", "Duration", "MB/s"};
    case AlertKind::networkHeavy:
        return {"Heavy network use", "Duration", "MB/s"};
    case AlertKind::batteryDrain:
        return {"Fast battery drain", "Anomaly", "% per hour"};
    case AlertKind::highTemperature:
        return {"High temperature", "Duration", "°C"};
    case AlertKind::thermalPressure:
        return {"Thermal pressure", "Duration", "state (2 = serious)"};
    case AlertKind::unusualCPU:
        return {"Unusual app behavior", "Anomaly", "% of a core"};
    case AlertKind::idleServer:
        return {"Idle dev server", "Threshold", "hours idle"};
    case AlertKind::lowStorage:
        return {"Low storage", "Threshold", "% free"};
    }
    return {};
}

} // namespace

std::string_view title(AlertKind kind) {
    return textsOf(kind).title;
}

std::string_view kindLabel(AlertKind kind) {
    return textsOf(kind).kindLabel;
}

std::string_view thresholdUnit(AlertKind kind) {
    return textsOf(kind).thresholdUnit;
}

} // namespace ostrivane
