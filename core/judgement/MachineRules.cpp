#include "core/judgement/AlertRules.hpp"
#include "core/judgement/EvidenceText.hpp"
#include "core/judgement/Figures.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/Statistics.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

namespace ostrivane::AlertRules {

namespace {

const ApplicationSnapshot* thirstiest(const std::vector<ApplicationSnapshot>& applications) {
    return Figures::largest(applications, [](const ApplicationSnapshot& app) { return app.powerW; });
}

std::string fanSpeeds(const std::vector<FanReading>& fans) {
    return fans.empty() ? "no fans" : EvidenceText::fans(fans);
}

} // namespace

void batteryDrain(AlertRun& run) {
    constexpr double hour = 3600;
    const BatterySnapshot& battery = run.scene.snapshot.battery;
    if (!battery.isPresent || battery.state != BatterySnapshot::State::discharging)
        return;
    const auto points = run.scene.series.battery.recent(run.rule.window, run.scene.now());
    const double span = Statistics::timeSpan(points);
    if (points.empty() || !(span >= 0.8 * run.rule.window))
        return;
    const double drop = points.front().value - points.back().value;
    const double rate = drop / (span / hour); // of no span it is no number, and reaches no threshold
    if (!(rate >= run.rule.threshold))
        return;
    if (Alert* alert = run.fire("battery", AlertSeverity::warning)) {
        alert->title = fmt::format("Battery is draining at {}% per hour", Formatters::whole(rate));
        alert->body = fmt::format("Down {}% in {}.", Formatters::whole(drop), Formatters::duration(span));
        if (const ApplicationSnapshot* app = thirstiest(run.scene.snapshot.applications))
            alert->body +=
                fmt::format(" {} is drawing the most power ({}).", app->name, Formatters::power(app->powerW));
    }
}

void highTemperature(AlertRun& run) {
    const auto points = run.scene.series.cpuTemperature.recent(run.rule.window, run.scene.now());
    const auto mean = Statistics::mean(points);
    if (!mean || !(Statistics::timeSpan(points) >= 0.9 * run.rule.window) || !(*mean >= run.rule.threshold))
        return;
    if (Alert* alert = run.fire("cpu", AlertSeverity::warning)) {
        alert->title = "CPU temperature has stayed high";
        alert->body = fmt::format("{} on average for {}. Fans: {}.", Formatters::temperature(*mean),
                                  Formatters::duration(run.rule.window), fanSpeeds(run.scene.snapshot.thermal.fans));
    }
}

void thermalPressure(AlertRun& run) {
    const auto points = run.scene.series.thermal.recent(run.rule.window, run.scene.now());
    const bool stayed = std::ranges::all_of(
        points, [&](double level) { return level >= run.rule.threshold; }, &TimedValue::value);
    if (points.empty() || !(Statistics::timeSpan(points) >= 0.8 * run.rule.window) || !stayed)
        return;
    const ThermalLevel state = run.scene.snapshot.thermal.state;
    const bool isCritical = state == ThermalLevel::critical;
    if (Alert* alert = run.fire("thermal", isCritical ? AlertSeverity::critical : AlertSeverity::warning)) {
        const std::string level = state == ThermalLevel::nominal ? "normal" : Text::lowered(std::string(label(state)));
        const PlatformWords& words = run.scene.words;
        alert->title = fmt::format("{} reports {} thermal pressure", words.systemAtStart, level);
        alert->body =
            fmt::format("The system has been at {} or worse for {}; {} may be reducing performance to cool down.",
                        level, Formatters::duration(run.rule.window), words.system);
    }
}

void lowStorage(AlertRun& run) {
    const auto root = run.scene.snapshot.disk.root();
    if (!root || root->total == 0)
        return;
    const double percent = static_cast<double>(root->available) / static_cast<double>(root->total) * 100;
    if (!(percent < run.rule.threshold))
        return;
    const auto severity = percent < run.rule.threshold / 2 ? AlertSeverity::critical : AlertSeverity::warning;
    if (Alert* alert = run.fire(root->mountPoint, severity)) {
        alert->title = fmt::format("{} is running out of space", root->name);
        alert->body = fmt::format("{} free of {} ({}%).", Formatters::storage(root->available),
                                  Formatters::storage(root->total), Formatters::whole(percent));
    }
}

void idleServer(AlertRun& run) {
    constexpr double hour = 3600;
    for (const DevServer& server : run.scene.snapshot.devServers) {
        const double idle = std::max(server.idleFor.value_or(0), server.uptime);
        if (!server.isIdle || !(idle >= run.rule.threshold * hour))
            continue;
        if (Alert* alert = run.fire(std::to_string(server.pid), AlertSeverity::info)) {
            alert->title = fmt::format("{} on port {} looks idle", server.kind, EvidenceText::ports(server.ports));
            alert->body = fmt::format("Running for {}, {}, using {}.", Formatters::duration(server.uptime),
                                      server.activity, Formatters::bytes(server.memory));
        }
    }
}

} // namespace ostrivane::AlertRules
