#include "app/model/AppSettings.hpp"

#include "core/model/Formatters.hpp"
#include "core/model/JSON.hpp"

#include <boost/signals2/signal.hpp>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace ostrivane {

namespace {

/// Calls `visit` with the name and the pointer of each choice.
template <class Visit>
void forEachChoice(const Visit& visit) {
    boost::mp11::mp_for_each<JSON::MembersOf<Preferences>>(
        [&](auto member) { visit(std::string_view(member.name), member.pointer); });
}

template <class Value>
std::optional<Value> read(const KeyValueStore& store, std::string_view key) {
    if constexpr (std::is_same_v<Value, bool>) {
        return store.boolean(key);
    } else if constexpr (std::is_same_v<Value, double>) {
        return store.number(key);
    } else if constexpr (std::is_same_v<Value, std::int64_t>) {
        return store.integer(key);
    } else if constexpr (std::is_same_v<Value, std::string>) {
        return store.text(key);
    } else if constexpr (std::is_same_v<Value, OrganizerGrouping>) {
        const auto text = store.text(key);
        return text ? fromRawValue<OrganizerGrouping>(*text) : std::nullopt;
    } else {
        const auto document = store.json(key);
        const auto json = document ? JSON::parse(*document) : std::nullopt;
        return json ? JSON::read<Value>(*json) : std::nullopt;
    }
}

template <class Value>
bool readsBack(const std::string& document, const Value& value) {
    const auto json = JSON::parse(document);
    return json && JSON::read<Value>(*json) == value;
}

template <class Value>
void keep(KeyValueStore& store, std::string_view key, const Value& value) {
    if constexpr (std::is_same_v<Value, bool>)
        store.setBoolean(key, value);
    else if constexpr (std::is_same_v<Value, double>)
        store.setNumber(key, value);
    else if constexpr (std::is_same_v<Value, std::int64_t>)
        store.setInteger(key, value);
    else if constexpr (std::is_same_v<Value, std::string>)
        store.setText(key, value);
    else if constexpr (std::is_same_v<Value, OrganizerGrouping>)
        store.setText(key, rawValue(value));
    else if (const std::string document = JSON::text(value); readsBack(document, value)) // a figure may be no number
        store.setJSON(key, document);
}

/// What a later version of the program added comes last, and switched off.
void topUp(std::vector<MenuBarItemConfig>& items) {
    for (const auto& [metric, text] : rawTexts(EnumTag<MenuMetric>{}))
        if (std::ranges::find(items, metric, &MenuBarItemConfig::metric) == items.end())
            items.push_back({metric, false, MenuItemStyle::value, true});
}

void topUp(std::vector<AlertRule>& rules) {
    for (const AlertRule& rule : AlertRule::defaults)
        if (std::ranges::find(rules, rule.kind, &AlertRule::kind) == rules.end())
            rules.push_back(rule);
}

void topUp(Preferences& loaded) {
    topUp(loaded.menuBarItems);
    topUp(loaded.alertRules);
}

void showUnits(const Preferences& chosen) {
    Formatters::temperatureUnit = chosen.temperatureUnit;
    Formatters::rateUnit = chosen.rateUnit;
    Formatters::cpuScale = chosen.cpuScale;
}

bool outlivesReset(std::string_view key) {
    return key.starts_with("NS") || key.starts_with("Apple") || key == "hasOnboarded";
}

} // namespace

struct AppSettings::Signal {
    boost::signals2::signal<void()> observers;
};

AppSettings::AppSettings(std::unique_ptr<KeyValueStore> keeper)
    : store(std::move(keeper)), stored(load()), chosen(stored), changed(std::make_unique<Signal>()) {
    showUnits(chosen);
}

AppSettings::~AppSettings() = default;

Preferences AppSettings::load() const {
    Preferences loaded;
    forEachChoice([&]<class Value>(std::string_view key, Value Preferences::*choice) {
        if (auto value = read<Value>(*store, key))
            loaded.*choice = *std::move(value);
    });
    topUp(loaded);
    return loaded;
}

template <class Value>
void AppSettings::set(Value Preferences::*member, std::type_identity_t<Value> value) {
    chosen.*member = std::move(value);
    topUp(chosen); // as the next start would
    forEachChoice([&]<class Other>(std::string_view key, Other Preferences::*choice) {
        if constexpr (std::is_same_v<Other, Value>)
            if (choice == member)
                keep(*store, key, chosen.*member);
    });
    stored.*member = chosen.*member;
    publish();
}

// One for each type that `Preferences` has; one that lacks here is missed by the linker.
template void AppSettings::set(bool Preferences::*, bool);
template void AppSettings::set(double Preferences::*, double);
template void AppSettings::set(std::int64_t Preferences::*, std::int64_t);
template void AppSettings::set(std::string Preferences::*, std::string);
template void AppSettings::set(MenuBarLayout Preferences::*, MenuBarLayout);
template void AppSettings::set(std::vector<MenuBarItemConfig> Preferences::*, std::vector<MenuBarItemConfig>);
template void AppSettings::set(TemperatureSource Preferences::*, TemperatureSource);
template void AppSettings::set(AppearanceMode Preferences::*, AppearanceMode);
template void AppSettings::set(TemperatureUnit Preferences::*, TemperatureUnit);
template void AppSettings::set(RateUnit Preferences::*, RateUnit);
template void AppSettings::set(CPUScale Preferences::*, CPUScale);
template void AppSettings::set(std::vector<AlertRule> Preferences::*, std::vector<AlertRule>);
template void AppSettings::set(OrganizerGrouping Preferences::*, OrganizerGrouping);

SamplingSettings AppSettings::sampling() const {
    constexpr double secondsPerHour = 3600;
    return {.backgroundInterval = chosen.backgroundInterval,
            .foregroundInterval = chosen.foregroundInterval,
            .includeSystemProcesses = chosen.includeSystemProcesses,
            .perProcessNetwork = chosen.perProcessNetwork,
            .idleServerThreshold = chosen.idleThresholdHours * secondsPerHour,
            .projectDetection = chosen.projectDetection};
}

void AppSettings::resetAll() {
    store->together([this] {
        for (const std::string& key : store->keys())
            if (!outlivesReset(key))
                store->remove(key);
        const Preferences fresh = stored = load();
        // In this order, and without what the user arranges while working: that stays until the next start.
        const auto assign = [&](auto... members) { (set(members, fresh.*members), ...); };
        using P = Preferences;
        assign(&P::menuBarLayout, &P::menuBarItems, &P::temperatureSource, &P::appearance, &P::temperatureUnit,
               &P::rateUnit, &P::cpuScale, &P::showInDock, &P::backgroundInterval, &P::foregroundInterval,
               &P::retentionDays, &P::includeSystemProcesses, &P::perProcessNetwork, &P::projectDetection,
               &P::idleThresholdHours, &P::alertRules, &P::notificationsEnabled, &P::popoverListLayout,
               &P::checkForUpdates);
    });
}

void AppSettings::reload() {
    store->reload();
    const Preferences before = std::exchange(stored, load());
    Preferences now = chosen;
    forEachChoice([&](std::string_view, auto choice) {
        if (before.*choice != stored.*choice) // what only lives in memory stays
            now.*choice = stored.*choice;
    });
    if (now == chosen)
        return;
    chosen = std::move(now);
    publish();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): handed over, whatever the signal makes of it
Subscription AppSettings::observe(std::function<void()> observer) {
    return changed->observers.connect(observer);
}

void AppSettings::publish() {
    showUnits(chosen);
    changed->observers();
}

} // namespace ostrivane
