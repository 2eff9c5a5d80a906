#include "core/judgement/AlertRules.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/Statistics.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane::AlertRules {

namespace {

using Points = std::span<const TimedValue>;

/// False when no mean of the series can be `least` or more, as for most applications most of the time: adding up the
/// window of each would be most of the work. The margin is for sums that are rounded up.
bool mayReach(const RollingSeries& series, double least) {
    const double ceiling = series.ceiling();
    return ceiling + std::abs(ceiling) * 1e-9 >= least;
}

/// The mean of the rule's window where it can be `least` or more; absent while less than nine tenths of it are known.
std::optional<double> coveredMean(const RollingSeries& series, double least, const AlertRun& run) {
    if (!mayReach(series, least))
        return std::nullopt;
    const Points points = series.recent(run.rule.window, run.scene.now());
    const bool covered = Statistics::timeSpan(points) >= 0.9 * run.rule.window;
    return covered ? Statistics::mean(points) : std::nullopt;
}

/// Whether `recent` rises above the mean of `before`, loads of a processor and so never negative. For most applications
/// that are busy it does not: they were so before. Then not all of the hour has to be added up.
bool risesFrom(Points before, double recent) {
    constexpr double leastRise = 3; // times the mean
    constexpr std::size_t atOnce = 32;
    const auto count = static_cast<double>(before.size());
    double sum = 0;
    for (Points rest = before; !rest.empty();) {
        const Points some = rest.first(std::min(atOnce, rest.size()));
        for (const TimedValue& point : some)
            sum += point.value;
        if (!(recent > leastRise * (sum / count))) // what is left can only raise the mean
            return false;
        rest = rest.subspan(some.size());
    }
    return !before.empty();
}

/// What the application did in the past hour before the last `inWindow` points, if it did that for long enough, and if
/// `recent` stands out from it; else absent.
std::optional<Statistics::MeanAndStdDev> exceededBaseline(Points past, std::size_t inWindow, double recent) {
    constexpr double leastKnown = 1800;
    constexpr double leastDeviation = 0.02; // cores
    if (past.empty() || Statistics::timeSpan(past) < leastKnown)
        return std::nullopt;
    const Points before = past.first(past.size() - std::min(inWindow, past.size()));
    if (!risesFrom(before, recent))
        return std::nullopt;
    std::vector<double> values;
    values.reserve(before.size());
    std::ranges::transform(before, std::back_inserter(values), &TimedValue::value);
    const auto baseline = Statistics::meanAndStdDev(values);
    const bool exceeded = baseline && recent > baseline->mean + 4 * std::max(baseline->sd, leastDeviation);
    return exceeded ? baseline : std::nullopt;
}

void heavyTraffic(AlertRun& run, RollingSeries AppSeries::*traffic, std::string_view does) {
    const double least = run.rule.threshold * 1'000'000; // bytes per second
    run.eachApplication([&](const std::string& key, const AppSeries& app) {
        const auto mean = coveredMean(app.*traffic, least, run);
        if (!mean || !(*mean >= least))
            return;
        if (Alert* alert = run.fire(key, AlertSeverity::warning)) {
            alert->title = fmt::format("{} is {}", app.name, does);
            alert->body =
                fmt::format("{} on average for {} (about {}).", Formatters::rate(*mean),
                            Formatters::duration(run.rule.window), Formatters::bytes(*mean * run.rule.window));
        }
    });
}

} // namespace

void sustainedCPU(AlertRun& run) {
    constexpr double criticalCores = 2;
    run.eachApplication([&](const std::string& key, const AppSeries& app) {
        const auto mean = key == systemKey ? std::nullopt : coveredMean(app.cpu, run.rule.threshold / 100, run);
        if (!mean || !(*mean * 100 >= run.rule.threshold))
            return;
        const auto severity = *mean >= criticalCores ? AlertSeverity::critical : AlertSeverity::warning;
        if (Alert* alert = run.fire(key, severity)) {
            alert->title = fmt::format("{} is keeping the CPU busy", app.name);
            alert->body =
                fmt::format("{} on average for {}.", Formatters::cpu(*mean), Formatters::duration(run.rule.window));
        }
    });
}

void unusualCPU(AlertRun& run) {
    constexpr double hour = 3600;
    run.eachApplication([&](const std::string& key, const AppSeries& app) {
        if (key == systemKey || !mayReach(app.cpu, run.rule.threshold / 100))
            return;
        const Points window = app.cpu.recent(run.rule.window, run.scene.now());
        const auto recent = Statistics::mean(window);
        if (!recent || !(*recent * 100 >= run.rule.threshold))
            return;
        const auto baseline = exceededBaseline(app.cpu.recent(hour, run.scene.now()), window.size(), *recent);
        if (!baseline)
            return;
        if (Alert* alert = run.fire(key, AlertSeverity::info)) {
            alert->title = fmt::format("{} is using unusually high CPU", app.name);
            alert->body =
                fmt::format("{} over the last {}, versus {} typical over the past hour.", Formatters::cpu(*recent),
                            Formatters::duration(run.rule.window), Formatters::cpu(baseline->mean));
        }
    });
}

void diskWrite(AlertRun& run) {
    heavyTraffic(run, &AppSeries::diskWrite, "hammering the disk");
}

void networkHeavy(AlertRun& run) {
    heavyTraffic(run, &AppSeries::network, "moving a lot of data");
}

} // namespace ostrivane::AlertRules
