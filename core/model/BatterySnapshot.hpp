#pragma once

#include "core/model/Described.hpp"
#include "core/model/RawValue.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace ostrivane {

/// The power source and the battery.
struct BatterySnapshot {
    enum class State { charging, discharging, charged, acNotCharging };

    bool isPresent = false;
    std::int64_t percent = 0; ///< 0 to 100
    State state = State::acNotCharging;
    bool onAC = true;
    std::optional<std::int64_t> minutesRemaining;
    std::optional<std::int64_t> cycleCount;
    std::optional<std::int64_t> healthPercent;
    std::optional<std::string> healthCondition;
    std::optional<std::int64_t> designCapacitymAh;
    std::optional<std::int64_t> fullChargeCapacitymAh;
    std::optional<double> temperatureC;
    std::optional<double> voltage;  ///< volts
    std::optional<double> amperage; ///< amperes; negative while discharging
    std::optional<double> batteryPowerW;
    std::optional<double> systemPowerW;
    std::optional<std::int64_t> adapterWatts;

    static const BatterySnapshot absent;
    friend bool operator==(const BatterySnapshot&, const BatterySnapshot&) = default;
};
BOOST_DESCRIBE_STRUCT(BatterySnapshot, (),
                      (isPresent, percent, state, onAC, minutesRemaining, cycleCount, healthPercent, healthCondition,
                       designCapacitymAh, fullChargeCapacitymAh, temperatureC, voltage, amperage, batteryPowerW,
                       systemPowerW, adapterWatts))
static_assert(describesEveryMember<BatterySnapshot>);
inline const BatterySnapshot BatterySnapshot::absent{};

constexpr std::array<RawText<BatterySnapshot::State>, 4> rawTexts(EnumTag<BatterySnapshot::State>) {
    using State = BatterySnapshot::State;
    return {{{State::charging, "Charging"},
             {State::discharging, "On Battery"},
             {State::charged, "Charged"},
             {State::acNotCharging, "Not Charging"}}};
}

} // namespace ostrivane
