#pragma once

#include "core/judgement/AlertKind.hpp"
#include "core/model/Described.hpp"

#include <array>

namespace ostrivane {

/// When an alert of one kind is due. Its identity is `kind`; the user may change all else.
struct AlertRule {
    AlertKind kind = AlertKind::sustainedCPU;
    bool enabled = true;
    double threshold = 0; ///< in `thresholdUnit(kind)`
    double window = 0;    ///< seconds that are looked at
    double cooldown = 0;  ///< seconds of silence about one subject after each alert
    bool notify = true;   ///< whether an alert is shown as a notification too

    static constexpr bool allMembersRequired = true; ///< in JSON
    /// One rule a kind, in the order of the kinds.
    static const std::array<AlertRule, alertKindCount> defaults;
    friend bool operator==(const AlertRule&, const AlertRule&) = default;
};
BOOST_DESCRIBE_STRUCT(AlertRule, (), (kind, enabled, threshold, window, cooldown, notify))
static_assert(describesEveryMember<AlertRule>);

inline constexpr std::array<AlertRule, alertKindCount> AlertRule::defaults{
    {{AlertKind::sustainedCPU, true, 80, 600, 3600, true},
     {AlertKind::excessiveMemory, true, 35, 120, 10800, true},
     {AlertKind::memoryGrowth, true, 1, 3600, 10800, true},
     {AlertKind::memoryPressure, true, 2, 300, 3600, true},
     {AlertKind::swapGrowth, true, 2, 1800, 3600, false},
     {AlertKind::diskWrite, true, 50, 300, 3600, true},
     {AlertKind::networkHeavy, true, 10, 300, 3600, false},
     {AlertKind::batteryDrain, true, 25, 900, 7200, true},
     {AlertKind::highTemperature, true, 95, 180, 3600, true},
     {AlertKind::thermalPressure, true, 2, 60, 3600, true},
     {AlertKind::unusualCPU, true, 50, 300, 7200, false},
     {AlertKind::idleServer, true, 24, 0, 86400, false},
     {AlertKind::lowStorage, true, 10, 0, 43200, true}}};

} // namespace ostrivane
