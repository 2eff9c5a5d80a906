#pragma once

#include "app/model/Preferences.hpp"
#include "core/model/ThermalSnapshot.hpp"

#include <optional>

namespace ostrivane {

/// The reading that the user chose to see as the machine's temperature, in °C.
inline std::optional<double> chosenTemperature(const ThermalSnapshot& thermal, TemperatureSource source) {
    switch (source) {
    case TemperatureSource::cpu:
        return thermal.cpuTemperature;
    case TemperatureSource::gpu:
        return thermal.gpuTemperature;
    case TemperatureSource::hottest:
        return thermal.hottest;
    }
    return std::nullopt;
}

} // namespace ostrivane
