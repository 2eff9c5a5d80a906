#include "app/pages/AlertRuleText.hpp"

#include "app/pages/Decimals.hpp"
#include "core/model/Formatters.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

constexpr double minute = 60;

/// "80% of a core", "24 hours idle", "level 2 (2 = elevated, 4 = critical)".
std::string thresholdText(const AlertRule& rule) {
    const std::string number = Formatters::decimal(rule.threshold, shownDecimals(rule.threshold));
    const std::string_view unit = thresholdUnit(rule.kind);
    if (unit.starts_with('%'))
        return fmt::format("{}{}", number, unit);
    if (const auto scale = unit.find(" ("); scale != std::string_view::npos)
        return fmt::format("{} {}{}", unit.substr(0, scale), number, unit.substr(scale));
    return fmt::format("{} {}", number, unit);
}

RuleNumber timeNumber(double seconds, double least, double most) {
    const bool inMinutes = std::fmod(seconds, minute) == 0;
    const double scale = inMinutes ? minute : 1;
    return {.value = seconds / scale,
            .least = std::ceil(least / scale),
            .most = std::floor(most / scale),
            .scale = scale,
            .unit = inMinutes ? "minutes" : "seconds",
            .decimals = inMinutes ? 0 : shownDecimals(seconds)};
}

} // namespace

std::string ruleLine(const AlertRule& rule) {
    std::string line = fmt::format("{} · {}", kindLabel(rule.kind), thresholdText(rule));
    if (looksAtWindow(rule.kind))
        line += " for " + Formatters::duration(rule.window);
    return line;
}

std::string rulesSummary(const std::vector<AlertRule>& rules) {
    const auto notifying =
        std::ranges::count_if(rules, [](const AlertRule& rule) { return rule.enabled && rule.notify; });
    return fmt::format("{} of {} on, {} notify", std::ranges::count(rules, true, &AlertRule::enabled), rules.size(),
                       notifying);
}

RuleNumbers ruleNumbers(const AlertRule& rule) {
    const AlertRuleLimits limit = limits(rule.kind);
    const std::string_view unit = thresholdUnit(rule.kind);
    const int least = unit == "GB" ? 1 : 0; // a gigabyte is much
    RuleNumbers numbers{.threshold = {.value = rule.threshold,
                                      .least = 0,
                                      .most = limit.mostThreshold,
                                      .scale = 1,
                                      .unit = unit,
                                      .decimals = std::max(least, shownDecimals(rule.threshold))},
                        .lasting = std::nullopt,
                        .cooldown = timeNumber(rule.cooldown, 0, limit.mostCooldown)};
    if (looksAtWindow(rule.kind))
        numbers.lasting = timeNumber(rule.window, limit.leastWindow, limit.mostWindow);
    return numbers;
}

std::optional<std::vector<AlertRule>> withChange(const std::vector<AlertRule>& rules, AlertKind kind,
                                                 const AlertRuleChange& change) {
    if (problem(kind, change))
        return std::nullopt;
    std::vector<AlertRule> edited = effectiveRules(rules);
    AlertRule& rule = *std::ranges::find(edited, kind, &AlertRule::kind);
    rule = changed(rule, change);
    return edited;
}

} // namespace ostrivane
