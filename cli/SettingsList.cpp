#include "cli/SettingsList.hpp"

#include "cli/SettingInput.hpp"
#include "cli/StyledText.hpp"

#include <array>
#include <utility>

namespace ostrivane::cli {

namespace {

using Effect = std::pair<std::string_view, std::string_view>;
constexpr std::array<Effect, 23> effects{{
    {"menuBarLayout", "what stands in the menu bar or tray"},
    {"menuBarItems", "which figures stand there, in which order"},
    {"temperatureSource", "which temperature stands there"},
    {"appearance", "colours of the window"},
    {"temperatureUnit", "unit of temperatures"},
    {"rateUnit", "unit of network rates"},
    {"cpuScale", "what 100% is: one core, or the whole computer"},
    {"showInDock", "shows the application in the Dock or task bar"},
    {"backgroundInterval", "pause between readings while nothing is open"},
    {"foregroundInterval", "pause between readings while something is open"},
    {"retentionDays", "how long history is kept"},
    {"includeSystemProcesses", "reads processes of the system and of others"},
    {"perProcessNetwork", "reads network traffic by process"},
    {"projectDetection", "looks for projects and their servers"},
    {"idleThresholdHours", "quiet time after which a dev server counts as idle"},
    {"alertRules", "when to warn, one rule a kind"},
    {"notificationsEnabled", "shows alerts on the desktop"},
    {"organizerGrouping", "folders that the organizer makes"},
    {"popoverTab", "tab that the small window opens with"},
    {"popoverListLayout", "shows the small window as a list"},
    {"diagnosticsLogging", "reserved for diagnostics"},
    {"hasOnboarded", "the welcome was shown"},
    {"checkForUpdates", "looks for new versions"},
}};

std::string_view effectOf(std::string_view key) {
    const auto* const found = std::ranges::find(effects, key, &Effect::first);
    return found == effects.end() ? std::string_view() : found->second;
}

std::string words(const std::vector<MenuBarItemConfig>& items) {
    std::vector<std::string_view> shown;
    for (const MenuBarItemConfig& item : items)
        if (item.enabled)
            shown.push_back(rawValue(item.metric));
    return shown.empty() ? "none" : fmt::format("{}", fmt::join(shown, ", "));
}

std::string words(const std::vector<AlertRule>& rules) {
    return fmt::format("{} of {} on", std::ranges::count(rules, true, &AlertRule::enabled), rules.size());
}

template <class Value>
std::string words(const Value& value) {
    if constexpr (TextEnum<Value>)
        return std::string(rawValue(value));
    else if constexpr (std::is_same_v<Value, std::string>)
        return Text::visible(value);
    else
        return JSON::text(value);
}

} // namespace

std::vector<SettingRow> settingRows(const Preferences& chosen) {
    const Preferences defaults;
    std::vector<SettingRow> rows;
    boost::mp11::mp_for_each<JSON::MembersOf<Preferences>>([&](auto member) {
        const auto& value = chosen.*member.pointer;
        using Value = std::remove_cvref_t<decltype(value)>;
        rows.push_back({.key = member.name,
                        .value = words(value),
                        .json = JSON::text(value),
                        .defaultJSON = JSON::text(defaults.*member.pointer),
                        .offered = offeredText<Value>(member.name),
                        .effect = effectOf(member.name)});
    });
    return rows;
}

std::string settingsText(const std::vector<SettingRow>& rows, const std::string& place, std::optional<int> width) {
    int keys = 0, values = 0, offers = 0;
    for (const SettingRow& row : rows) {
        keys = std::max(keys, Text::columns(row.key));
        values = std::max(values, Text::columns(row.value));
        offers = std::max(offers, Text::columns(row.offered));
    }
    std::string text;
    const auto add = [&](std::string_view mark, std::string_view key, std::string_view value, std::string_view offered,
                         std::string_view effect) {
        std::string line = fmt::format("{} {}  {}  {}  {}", mark, leftAligned(key, keys), leftAligned(value, values),
                                       leftAligned(offered, offers), effect);
        text += (width ? Text::fitted(line, *width) : line) + "\n";
    };
    add(" ", "SETTING", "VALUE", "OFFERED", "WHAT IT DOES");
    for (const SettingRow& row : rows)
        add(row.isDefault() ? " " : "*", row.key, row.value, row.offered, row.effect);
    return text + fmt::format("\n* is not the default. Kept in {}\n", Text::visible(place));
}

std::string settingsJSON(const std::vector<SettingRow>& rows) {
    std::string out = "[";
    for (const SettingRow& row : rows)
        out += fmt::format(R"({}{{"key":{},"value":{},"default":{},"isDefault":{},"offered":{},"effect":{}}})",
                           out.size() > 1 ? "," : "", JSON::text(row.key), row.json, row.defaultJSON, row.isDefault(),
                           JSON::text(row.offered), JSON::text(row.effect));
    return out + "]\n";
}

} // namespace ostrivane::cli
