#pragma once

#include "core/judgement/AlertKind.hpp"
#include "core/model/MemorySnapshot.hpp"
#include "core/model/RollingSeries.hpp"
#include "core/model/SystemSnapshot.hpp"
#include "core/model/TextHash.hpp"

#include <boost/unordered/unordered_flat_map.hpp>

#include <array>
#include <functional>
#include <optional>
#include <string>

namespace ostrivane {

/// The recent past of one application.
struct AppSeries {
    std::string name;                  ///< the last one that it had
    double lastSeen = 0;               ///< when a snapshot last held it
    RollingSeries cpu{3900, 10};       ///< cores
    RollingSeries memory{10800, 30};   ///< bytes
    RollingSeries diskWrite{1800, 10}; ///< bytes per second
    RollingSeries network{1800, 10};   ///< bytes per second, both ways; nothing while traffic is not told
    /// When a rule last fired about it, by kind, as far as this was seen: the book knows of all.
    std::array<std::optional<double>, alertKindCount> lastFired;
};

/// The recent past of the machine and its applications, as far as alerts look at it. Times are those of the snapshots,
/// never of a clock.
struct AlertSeries {
    /// Takes in a snapshot. An application that none held for ten minutes is forgotten.
    void feed(const SystemSnapshot& snapshot);

    /// By application key, in no defined order.
    boost::unordered_flat_map<std::string, AppSeries, TextHash, std::equal_to<>> apps;
    RollingSeries swap{7200, 30};                ///< bytes in use
    RollingSeries cpuTemperature{3600, 10};      ///< degrees Celsius
    RollingSeries thermal{3600, 5};              ///< 0 to 3, the levels of `ThermalLevel`
    RollingSeries battery{7200, 30};             ///< percent while discharging
    std::optional<double> pressureElevatedSince; ///< since when no snapshot told normal memory pressure

private:
    void feed(const ApplicationSnapshot& app, double now);
};

} // namespace ostrivane
