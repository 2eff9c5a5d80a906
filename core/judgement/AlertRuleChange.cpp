#include "core/judgement/AlertRuleChange.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace ostrivane {

namespace {

constexpr double day = 86'400;
constexpr double mostCooldown = 365 * day;

struct Most {
    double threshold;
    double window;
};

/// What is beyond these never fires: no machine gets there, or nothing that old is remembered.
Most mostOf(AlertKind kind) {
    constexpr double percent = 100, cores = 100'000, gigabytes = 1'000'000, megabytesPerSec = 1'000'000;
    switch (kind) {
    case AlertKind::sustainedCPU:
        return {cores, 3900};
    case AlertKind::unusualCPU:
        return {cores, 1800};
    case AlertKind::excessiveMemory:
        return {percent, day};
    case AlertKind::memoryGrowth:
        return {gigabytes, 10'800};
    case AlertKind::memoryPressure:
        return {4, day};
    case AlertKind::swapGrowth:
        return {gigabytes, 7200};
    case AlertKind::diskWrite:
    case AlertKind::networkHeavy:
        return {megabytesPerSec, 1800};
    case AlertKind::batteryDrain:
        return {1000, 7200};
    case AlertKind::highTemperature:
        return {200, 3600};
    case AlertKind::thermalPressure:
        return {3, 3600};
    case AlertKind::idleServer:
        return {24 * 365, day};
    case AlertKind::lowStorage:
        return {percent, day};
    }
    return {0, 0};
}

/// Figures are kept every ten seconds, and nine tenths of these windows must be known.
constexpr double leastCovered = 120;

bool needsManyReadings(AlertKind kind) {
    return kind == AlertKind::sustainedCPU || kind == AlertKind::diskWrite || kind == AlertKind::networkHeavy ||
           kind == AlertKind::highTemperature;
}

std::optional<std::string> problem(std::string_view what, std::optional<double> value, double most,
                                   std::string_view unit) {
    if (!value || (*value >= 0 && *value <= most)) // also refuses what is no number
        return std::nullopt;
    return fmt::format("the {} must be a number from 0 to {} ({})", what, most, unit);
}

} // namespace

AlertRuleLimits limits(AlertKind kind) {
    const Most most = mostOf(kind);
    return {.mostThreshold = most.threshold,
            .leastWindow = needsManyReadings(kind) ? leastCovered : 0,
            .mostWindow = most.window,
            .mostCooldown = mostCooldown};
}

bool looksAtWindow(AlertKind kind) {
    return kind != AlertKind::excessiveMemory && kind != AlertKind::idleServer && kind != AlertKind::lowStorage;
}

std::optional<std::string> problem(AlertKind kind, const AlertRuleChange& change) {
    const AlertRuleLimits limit = limits(kind);
    if (auto found = problem("threshold", change.threshold, limit.mostThreshold, thresholdUnit(kind)))
        return found;
    if (auto found = problem("window", change.window, limit.mostWindow, "seconds"))
        return found;
    if (change.window && *change.window < limit.leastWindow)
        return fmt::format("the window must be {} seconds or more: a shorter one holds too few readings",
                           limit.leastWindow);
    return problem("cooldown", change.cooldown, limit.mostCooldown, "seconds");
}

std::vector<AlertRule> effectiveRules(const std::vector<AlertRule>& rules) {
    std::vector<AlertRule> effective(AlertRule::defaults.begin(), AlertRule::defaults.end());
    for (const AlertRule& rule : rules)
        *std::ranges::find(effective, rule.kind, &AlertRule::kind) = rule;
    return effective;
}

AlertRule changed(AlertRule rule, const AlertRuleChange& change) {
    rule.threshold = change.threshold.value_or(rule.threshold);
    rule.window = change.window.value_or(rule.window);
    rule.cooldown = change.cooldown.value_or(rule.cooldown);
    rule.enabled = change.enabled.value_or(rule.enabled);
    rule.notify = change.notify.value_or(rule.notify);
    return rule;
}

} // namespace ostrivane
