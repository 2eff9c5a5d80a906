#include "core/model/ThermalSnapshot.hpp"

#include <algorithm>

namespace ostrivane {

std::string_view label(ThermalLevel level) {
    switch (level) {
    case ThermalLevel::nominal:
        return "Nominal";
    case ThermalLevel::fair:
        return "Fair";
    case ThermalLevel::serious:
        return "Serious";
    case ThermalLevel::critical:
        return "Critical";
    }
    return {};
}

std::optional<double> FanReading::fraction() const {
    if (!minRPM || !maxRPM || !(*minRPM < *maxRPM))
        return std::nullopt;
    return std::clamp((rpm - *minRPM) / (*maxRPM - *minRPM), 0.0, 1.0);
}

} // namespace ostrivane
