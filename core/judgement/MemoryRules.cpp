#include "core/judgement/AlertRules.hpp"
#include "core/judgement/Figures.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/PressureLevel.hpp"
#include "core/model/Statistics.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane::AlertRules {

namespace {

constexpr double gibibyte = 1024.0 * 1024 * 1024;

const ApplicationSnapshot* largest(const std::vector<ApplicationSnapshot>& applications) {
    return Figures::largest(applications, [](const ApplicationSnapshot& app) {
        return app.key == systemKey ? std::nullopt : std::optional(static_cast<double>(app.memory));
    });
}

} // namespace

void excessiveMemory(AlertRun& run) {
    const SystemSnapshot& snapshot = run.scene.snapshot;
    const std::uint64_t total = snapshot.memory.total;
    if (total == 0)
        return;
    for (const ApplicationSnapshot& app : snapshot.applications) {
        const double percent = static_cast<double>(app.memory) / static_cast<double>(total) * 100;
        if (app.key == systemKey || !(percent >= run.rule.threshold))
            continue;
        const auto severity = percent >= 1.5 * run.rule.threshold ? AlertSeverity::critical : AlertSeverity::warning;
        if (Alert* alert = run.fire(app.key, severity)) {
            alert->title = fmt::format("{} is using {}", app.name, Formatters::bytes(app.memory));
            alert->body =
                fmt::format("That's {}% of this {}'s {} of memory, across {} processes.", Formatters::whole(percent),
                            run.scene.words.computer, Formatters::bytes(total), app.pids.size());
        }
    }
}

void memoryGrowth(AlertRun& run) {
    constexpr double leastFit = 0.8;
    run.eachApplication([&](const std::string& key, const AppSeries& app) {
        const auto points = app.memory.recent(run.rule.window, run.scene.now());
        const double span = Statistics::timeSpan(points);
        if (key == systemKey || points.empty() || !(span >= 0.75 * run.rule.window))
            return;
        const double growth = points.back().value - points.front().value;
        if (!(growth / gibibyte >= run.rule.threshold)) // most end here, before a line is fitted
            return;
        const auto fit = Statistics::linearFit(points);
        if (!fit || !(fit->slope > 0) || !(fit->r2 >= leastFit))
            return;
        if (Alert* alert = run.fire(key, AlertSeverity::warning)) {
            alert->title = fmt::format("{} keeps using more memory", app.name);
            alert->body = fmt::format("Up {} in {}, now {}.", Formatters::bytes(growth), Formatters::duration(span),
                                      Formatters::bytes(points.back().value));
        }
    });
}

void memoryPressure(AlertRun& run) {
    const SystemSnapshot& snapshot = run.scene.snapshot;
    const MemorySnapshot& memory = snapshot.memory;
    const auto since = run.scene.series.pressureElevatedSince;
    if (!since)
        return;
    const double elapsed = run.scene.now() - *since;
    if (!(elapsed >= run.rule.window) || !(pressureLevel(memory.pressure) >= run.rule.threshold))
        return;
    const bool isCritical = memory.pressure == MemoryPressure::critical;
    if (Alert* alert = run.fire("system", isCritical ? AlertSeverity::critical : AlertSeverity::warning)) {
        alert->title = fmt::format("Memory pressure has been {} for {}",
                                   Text::lowered(std::string(label(memory.pressure))), Formatters::duration(elapsed));
        alert->body = fmt::format("Swap in use: {}.", Formatters::bytes(memory.swapUsed));
        if (const ApplicationSnapshot* app = largest(snapshot.applications))
            alert->body += fmt::format(" {} is the largest app at {}.", app->name, Formatters::bytes(app->memory));
    }
}

void swapGrowth(AlertRun& run) {
    const auto points = run.scene.series.swap.recent(run.rule.window, run.scene.now());
    if (points.empty())
        return;
    const double from = points.front().value;
    const double to = points.back().value;
    if (!((to - from) / gibibyte >= run.rule.threshold))
        return;
    if (Alert* alert = run.fire("system", AlertSeverity::warning)) {
        alert->title = fmt::format("Swap grew by {}", Formatters::bytes(to - from));
        alert->body = fmt::format("Swap went from {} to {} in {}. The {} is short on memory.", Formatters::bytes(from),
                                  Formatters::bytes(to), Formatters::duration(Statistics::timeSpan(points)),
                                  run.scene.words.computer);
    }
}

} // namespace ostrivane::AlertRules
