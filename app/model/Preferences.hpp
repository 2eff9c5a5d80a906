#pragma once

#include "core/judgement/AlertRule.hpp"
#include "core/model/Described.hpp"
#include "core/model/DisplayUnits.hpp"
#include "core/model/RawValue.hpp"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace ostrivane {

enum class AppearanceMode { system, light, dark };
constexpr std::array<RawText<AppearanceMode>, 3> rawTexts(EnumTag<AppearanceMode>) {
    return {{{AppearanceMode::system, "system"}, {AppearanceMode::light, "light"}, {AppearanceMode::dark, "dark"}}};
}

/// Which reading the menu bar's temperature shows.
enum class TemperatureSource { cpu, gpu, hottest };
constexpr std::array<RawText<TemperatureSource>, 3> rawTexts(EnumTag<TemperatureSource>) {
    return {
        {{TemperatureSource::cpu, "cpu"}, {TemperatureSource::gpu, "gpu"}, {TemperatureSource::hottest, "hottest"}}};
}
/// "Hottest sensor".
std::string_view title(TemperatureSource source);

enum class MenuBarLayout { iconOnly, combined, separate };
constexpr std::array<RawText<MenuBarLayout>, 3> rawTexts(EnumTag<MenuBarLayout>) {
    return {{{MenuBarLayout::iconOnly, "iconOnly"},
             {MenuBarLayout::combined, "combined"},
             {MenuBarLayout::separate, "separate"}}};
}
/// "One item, several values".
std::string_view title(MenuBarLayout layout);

enum class MenuMetric { cpu, memory, gpu, network, disk, temperature, battery, power };
constexpr std::array<RawText<MenuMetric>, 8> rawTexts(EnumTag<MenuMetric>) {
    return {{{MenuMetric::cpu, "cpu"},
             {MenuMetric::memory, "memory"},
             {MenuMetric::gpu, "gpu"},
             {MenuMetric::network, "network"},
             {MenuMetric::disk, "disk"},
             {MenuMetric::temperature, "temperature"},
             {MenuMetric::battery, "battery"},
             {MenuMetric::power, "power"}}};
}

enum class MenuItemStyle { value, graph, both };
constexpr std::array<RawText<MenuItemStyle>, 3> rawTexts(EnumTag<MenuItemStyle>) {
    return {{{MenuItemStyle::value, "value"}, {MenuItemStyle::graph, "graph"}, {MenuItemStyle::both, "both"}}};
}

/// One figure of the menu bar.
struct MenuBarItemConfig {
    MenuMetric metric = MenuMetric::cpu;
    bool enabled = false;
    MenuItemStyle style = MenuItemStyle::value;
    bool showCaption = true;

    static constexpr bool allMembersRequired = true; ///< in JSON
    friend bool operator==(const MenuBarItemConfig&, const MenuBarItemConfig&) = default;
};
BOOST_DESCRIBE_STRUCT(MenuBarItemConfig, (), (metric, enabled, style, showCaption))
static_assert(describesEveryMember<MenuBarItemConfig>);

inline constexpr std::array<MenuBarItemConfig, 8> defaultMenuItems{{
    {MenuMetric::cpu, true, MenuItemStyle::value, true},
    {MenuMetric::memory, true, MenuItemStyle::value, true},
    {MenuMetric::network, false, MenuItemStyle::value, false},
    {MenuMetric::gpu, false, MenuItemStyle::value, true},
    {MenuMetric::temperature, false, MenuItemStyle::value, false},
    {MenuMetric::disk, false, MenuItemStyle::value, true},
    {MenuMetric::battery, false, MenuItemStyle::value, false},
    {MenuMetric::power, false, MenuItemStyle::value, false},
}};

/// What the organizer sorts files into folders by.
enum class OrganizerGrouping { kind, kindAndMonth };
constexpr std::array<RawText<OrganizerGrouping>, 2> rawTexts(EnumTag<OrganizerGrouping>) {
    return {{{OrganizerGrouping::kind, "kind"}, {OrganizerGrouping::kindAndMonth, "kindAndMonth"}}};
}

/// What the user chose. The name of a member is its key in the store; the defaults stand here.
struct Preferences {
    MenuBarLayout menuBarLayout = MenuBarLayout::combined;
    std::vector<MenuBarItemConfig> menuBarItems{defaultMenuItems.begin(), defaultMenuItems.end()};
    TemperatureSource temperatureSource = TemperatureSource::cpu;
    AppearanceMode appearance = AppearanceMode::system;
    TemperatureUnit temperatureUnit = TemperatureUnit::celsius;
    RateUnit rateUnit = RateUnit::bytes;
    CPUScale cpuScale = CPUScale::perCore;
    bool showInDock = false;
    double backgroundInterval = 5; ///< seconds between readings with no interface visible
    double foregroundInterval = 2; ///< seconds between readings with some interface visible
    std::int64_t retentionDays = 30;
    bool includeSystemProcesses = true;
    bool perProcessNetwork = true;
    bool projectDetection = true;
    double idleThresholdHours = 2; ///< without activity, after which a dev server counts as idle
    std::vector<AlertRule> alertRules{AlertRule::defaults.begin(), AlertRule::defaults.end()};
    bool notificationsEnabled = true; ///< the master switch
    OrganizerGrouping organizerGrouping = OrganizerGrouping::kind;
    std::string popoverTab = "overview";
    bool popoverListLayout = false;
    bool diagnosticsLogging = false;
    bool hasOnboarded = false;
    bool checkForUpdates = true;

    friend bool operator==(const Preferences&, const Preferences&) = default;
};
BOOST_DESCRIBE_STRUCT(Preferences, (),
                      (menuBarLayout, menuBarItems, temperatureSource, appearance, temperatureUnit, rateUnit, cpuScale,
                       showInDock, backgroundInterval, foregroundInterval, retentionDays, includeSystemProcesses,
                       perProcessNetwork, projectDetection, idleThresholdHours, alertRules, notificationsEnabled,
                       organizerGrouping, popoverTab, popoverListLayout, diagnosticsLogging, hasOnboarded,
                       checkForUpdates))
static_assert(describesEveryMember<Preferences>);

} // namespace ostrivane
