#pragma once

#include "app/model/Preferences.hpp"
#include "app/model/WayBack.hpp"
#include "app/window/LoginItem.hpp"
#include "core/model/Date.hpp"
#include "core/model/PlatformWords.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ostrivane {

struct AppState;

/// What closing the window does now.
/// @param keepsRunning  what was answered when it was closed and only a further start led back; absent: not asked yet
std::string closingText(WayBack wayBack, std::optional<bool> keepsRunning);

/// What starting at login does, or what stands in its way.
std::string startAtLoginText(LoginItem::State state, WayBack wayBack);

/// What is told of what only a later version does.
inline constexpr std::string_view trayLater =
    "Ostrivane has no icon in the menu bar or tray yet. What you choose here is kept for it.";
inline constexpr std::string_view updatesLater =
    "Ostrivane does not look for new versions yet. What you choose here is kept for when it does.";
inline constexpr std::string_view projectsLater = "For the Projects and Ports pages to come";
inline constexpr std::string_view organizerLater = "For the Organizer page to come";

/// A figure of the menu bar: its name, its icon, and what it is now; "…" ahead of the first sample.
std::string_view name(MenuMetric metric);
std::string_view iconName(MenuMetric metric);
std::string valueText(MenuMetric metric, TemperatureSource source, const AppState& state);

/// How often the figures move.
std::string paceText(double backgroundInterval, double foregroundInterval);

/// Bytes of the history's files; a dash where there are none.
std::string historySizeText(std::uint64_t bytes);
/// "14 October"; a dash without a sample.
std::string earliestText(std::optional<Date> earliest, Date now);

} // namespace ostrivane
