#include "core/model/SystemSnapshot.hpp"

namespace ostrivane {

std::optional<double> SystemSnapshot::totalAppPower() const {
    std::optional<double> sum;
    for (const ApplicationSnapshot& application : applications)
        if (application.powerW)
            sum = sum.value_or(0) + *application.powerW;
    return sum;
}

std::optional<double> SystemSnapshot::systemPowerW() const {
    return battery.systemPowerW ? battery.systemPowerW : thermal.systemPowerW;
}

SystemSnapshot SystemSnapshot::empty(Date now) {
    SystemSnapshot snapshot;
    snapshot.timestamp = now;
    return snapshot;
}

} // namespace ostrivane
