#include "core/judgement/AlertEngine.hpp"

#include "core/judgement/AlertRules.hpp"

#include <cmath>
#include <cstddef>

namespace ostrivane {

namespace {

struct Step {
    AlertKind kind;
    void (*judge)(AlertRun&);
};

/// In the order in which alerts of one snapshot are told.
constexpr std::array<Step, alertKindCount> steps{{{AlertKind::sustainedCPU, AlertRules::sustainedCPU},
                                                  {AlertKind::unusualCPU, AlertRules::unusualCPU},
                                                  {AlertKind::excessiveMemory, AlertRules::excessiveMemory},
                                                  {AlertKind::memoryGrowth, AlertRules::memoryGrowth},
                                                  {AlertKind::memoryPressure, AlertRules::memoryPressure},
                                                  {AlertKind::swapGrowth, AlertRules::swapGrowth},
                                                  {AlertKind::diskWrite, AlertRules::diskWrite},
                                                  {AlertKind::networkHeavy, AlertRules::networkHeavy},
                                                  {AlertKind::batteryDrain, AlertRules::batteryDrain},
                                                  {AlertKind::highTemperature, AlertRules::highTemperature},
                                                  {AlertKind::thermalPressure, AlertRules::thermalPressure},
                                                  {AlertKind::idleServer, AlertRules::idleServer},
                                                  {AlertKind::lowStorage, AlertRules::lowStorage}}};

} // namespace

AlertEngine::AlertEngine(std::span<const AlertRule> first, const PlatformWords& platform) : words(platform) {
    update(first);
}

void AlertEngine::update(std::span<const AlertRule> next) {
    rules.fill(std::nullopt);
    for (const AlertRule& rule : next)
        rules[static_cast<std::size_t>(rule.kind)] = rule;
}

std::vector<Alert> AlertEngine::evaluate(const SystemSnapshot& snapshot) {
    std::vector<Alert> alerts;
    if (!(snapshot.interval > 0) || !std::isfinite(snapshot.timestamp.seconds))
        return alerts;
    series.feed(snapshot);
    const AlertScene scene{snapshot, series, words};
    for (const Step& step : steps) {
        const auto& rule = rules[static_cast<std::size_t>(step.kind)];
        if (!rule || !rule->enabled)
            continue;
        AlertRun run(*rule, scene, book, alerts);
        step.judge(run);
    }
    return alerts;
}

std::vector<TimedValue> AlertEngine::memorySeries(std::string_view key) const {
    return points(key, &AppSeries::memory);
}

std::vector<TimedValue> AlertEngine::cpuSeries(std::string_view key) const {
    return points(key, &AppSeries::cpu);
}

std::vector<TimedValue> AlertEngine::points(std::string_view key, RollingSeries AppSeries::*which) const {
    const auto app = series.apps.find(key);
    if (app == series.apps.end())
        return {};
    const auto points = (app->second.*which).points();
    return {points.begin(), points.end()};
}

} // namespace ostrivane
