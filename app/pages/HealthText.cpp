#include "app/pages/HealthText.hpp"

#include "app/model/AppState.hpp"
#include "app/model/DateWords.hpp"
#include "app/pages/Findings.hpp"
#include "app/widgets/StatusGlyph.hpp"
#include "app/widgets/Strings.hpp"

#include <boost/uuid/uuid_io.hpp>
#include <fmt/format.h>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double day = 24 * 3600.0;
constexpr std::size_t mostAlerts = 12;

std::string symbolOf(AlertKind kind) {
    switch (kind) {
    case AlertKind::sustainedCPU:
    case AlertKind::unusualCPU:
        return "cpu";
    case AlertKind::excessiveMemory:
    case AlertKind::memoryGrowth:
    case AlertKind::memoryPressure:
        return "memorychip";
    case AlertKind::swapGrowth:
        return "arrow.left.arrow.right";
    case AlertKind::diskWrite:
    case AlertKind::lowStorage:
        return "internaldrive";
    case AlertKind::networkHeavy:
        return "page.network";
    case AlertKind::batteryDrain:
        return "battery.25percent";
    case AlertKind::highTemperature:
    case AlertKind::thermalPressure:
        return "thermometer.high";
    case AlertKind::idleServer:
        return "moon.zzz";
    }
    return {};
}

HealthCard card(const HealthCategory& category, const PlatformWords& words) {
    HealthCard made{.name = text(category.name),
                    .symbol = category.symbol,
                    .condition = conditionOf(category.status),
                    .label = text(category.label)};
    for (const std::string& sentence : category.evidence)
        made.evidence.push_back(text(sentence));
    if (made.evidence.empty())
        made.note = QStringLiteral("There are no figures to judge this by.");
    if (const auto page = fromRawValue<Page>(category.destination)) {
        made.page = *page;
        made.link = text("Open " + title(*page, words));
    }
    return made;
}

} // namespace

HealthText presentHealth(const AppState& state, const PlatformWords& words) {
    HealthText made;
    if (!state.hasFirstSample || state.health.empty())
        return made;
    for (const HealthCategory& category : state.health)
        made.cards.push_back(card(category, words));
    const auto normal = std::ranges::count(state.health, HealthCategory::Status::good, &HealthCategory::status);
    made.condition = worstCondition(state.health).value_or(Condition::unknown);
    made.summary = text(state.statusSummary());
    made.count = text(
        fmt::format("{} of {} categories {} normal. Each card lists its evidence and opens the page that explains it.",
                    normal, state.health.size(), normal == 1 ? "is" : "are"));
    return made;
}

RecentAlerts presentRecentAlerts(const AppState& state, Date now) {
    RecentAlerts recent;
    std::size_t count = 0;
    for (const Alert& alert : state.alerts) {
        if (now - alert.date > day)
            continue;
        if (++count > mostAlerts)
            continue;
        recent.rows.push_back({.id = to_string(alert.id),
                               .icon = symbolOf(alert.kind),
                               .condition = conditionOf(alert.severity),
                               .title = text(alert.title),
                               .evidence = text(alert.body),
                               .time = text(DateWords::clock(alert.date))});
    }
    if (count > mostAlerts)
        recent.note = text(fmt::format("{} of {}", mostAlerts, count));
    return recent;
}

QString rulesText(std::span<const AlertRule> rules, bool notificationsEnabled) {
    const auto watching = std::ranges::count_if(rules, &AlertRule::enabled);
    const auto notifying =
        std::ranges::count_if(rules, [&](const AlertRule& rule) { return rule.enabled && rule.notify; });
    return text(fmt::format("{} {} this machine, {} may notify you.", watching,
                            watching == 1 ? "rule watches" : "rules watch", notificationsEnabled ? notifying : 0));
}

} // namespace ostrivane
