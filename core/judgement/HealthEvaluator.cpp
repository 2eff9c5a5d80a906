#include "core/judgement/HealthEvaluator.hpp"

#include "core/judgement/EvidenceText.hpp"
#include "core/judgement/Figures.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/Page.hpp"
#include "core/model/PlatformWords.hpp"
#include "core/model/SystemSnapshot.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ostrivane::HealthEvaluator {

namespace {

using Status = HealthCategory::Status;

struct Verdict {
    Status status = Status::unknown;
    std::string_view label = Formatters::unavailable;
};

HealthCategory category(std::string_view id, std::string_view name, std::string_view symbol, Page destination,
                        Verdict verdict) {
    return {.id = std::string(id),
            .name = std::string(name),
            .symbol = std::string(symbol),
            .status = verdict.status,
            .label = std::string(verdict.label),
            .destination = std::string(rawValue(destination))};
}

Verdict loadVerdict(double load) {
    if (!std::isfinite(load))
        return {};
    if (load < 0.6)
        return {Status::good, "Normal"};
    return load < 0.85 ? Verdict{Status::elevated, "Elevated"} : Verdict{Status::high, "High"};
}

HealthCategory processor(const SystemSnapshot& snapshot, std::optional<double> cpuAverage5m) {
    const double load = cpuAverage5m.value_or(snapshot.cpu.usage);
    HealthCategory made = category("cpu", "CPU", "cpu", Page::cpu, loadVerdict(load));
    made.evidence = {fmt::format("{} average over the last 5 minutes on {} cores.", Formatters::percent(load),
                                 snapshot.cpu.logicalCoreCount),
                     fmt::format("Load average {} (1 min).", Formatters::decimal(snapshot.cpu.loadAverage[0], 2))};
    const auto* busiest = Figures::largest(snapshot.applications, [](const auto& app) { return app.cpu; });
    if (busiest && busiest->cpu > 0.2)
        made.evidence.push_back(
            fmt::format("{} is the busiest app at {}.", busiest->name, Formatters::cpu(busiest->cpu)));
    return made;
}

Verdict pressureVerdict(MemoryPressure pressure) {
    switch (pressure) {
    case MemoryPressure::normal:
        return {Status::good, "Normal"};
    case MemoryPressure::warning:
        return {Status::elevated, "Elevated"};
    case MemoryPressure::critical:
        return {Status::high, "Critical"};
    }
    return {};
}

HealthCategory memoryUse(const MemorySnapshot& memory, std::optional<double> pressureElevatedFor) {
    HealthCategory made = category("memory", "Memory", "memorychip", Page::memory, pressureVerdict(memory.pressure));
    if (pressureElevatedFor && *pressureElevatedFor > 60)
        made.evidence.push_back(fmt::format("Pressure has stayed {} for {}.", Text::lowered(made.label),
                                            Formatters::duration(*pressureElevatedFor)));
    made.evidence.push_back(fmt::format("Memory pressure {}% ({}).", memory.pressurePercent(), made.label));
    made.evidence.push_back(fmt::format("{} used of {}, {} compressed.", Formatters::bytes(memory.used),
                                        Formatters::bytes(memory.total), Formatters::bytes(memory.compressed)));
    if (memory.swapUsed != 0)
        made.evidence.push_back(fmt::format("{} of swap in use.", Formatters::bytes(memory.swapUsed)));
    return made;
}

HealthCategory storageSpace(const std::optional<VolumeInfo>& root) {
    constexpr std::uint64_t leastAvailable = 10'000'000'000;
    HealthCategory made = category("storage", "Storage", "internaldrive", root ? Page::storage : Page::disk, {});
    if (!root || root->total == 0)
        return made;
    const double fraction = static_cast<double>(root->available) / static_cast<double>(root->total);
    const bool isLow = fraction < 0.1 || root->available < leastAvailable;
    made.status = isLow ? Status::high : Status::good;
    made.label = isLow ? "Low Space" : "Healthy";
    made.evidence.push_back(fmt::format("{} available of {} on {} ({}% free).", Formatters::storage(root->available),
                                        Formatters::storage(root->total), root->name,
                                        Formatters::whole(fraction * 100)));
    return made;
}

Verdict batteryVerdict(const BatterySnapshot& battery) {
    const std::string_view condition = battery.healthCondition ? std::string_view(*battery.healthCondition) : "";
    if (Text::containsCaseless(condition, "service") || Text::containsCaseless(condition, "replace"))
        return {Status::high, "Service Recommended"};
    return battery.healthPercent && *battery.healthPercent < 80 ? Verdict{Status::elevated, "Aging"}
                                                                : Verdict{Status::good, "Healthy"};
}

HealthCategory batteryHealth(const BatterySnapshot& battery, const PlatformWords& words) {
    HealthCategory made = category("battery", "Battery", "battery.75percent", Page::battery, batteryVerdict(battery));
    if (battery.healthPercent)
        made.evidence.push_back(fmt::format("Maximum capacity {}% of the original design.", *battery.healthPercent));
    if (battery.cycleCount)
        made.evidence.push_back(fmt::format("{} charge cycles.", *battery.cycleCount));
    if (battery.healthCondition && !battery.healthCondition->empty())
        made.evidence.push_back(
            fmt::format("{} reports the condition as “{}”.", words.systemAtStart, *battery.healthCondition));
    return made;
}

Verdict thermalVerdict(ThermalLevel level) {
    switch (level) {
    case ThermalLevel::nominal:
        return {Status::good, "Normal"};
    case ThermalLevel::fair:
        return {Status::elevated, "Elevated"};
    case ThermalLevel::serious:
    case ThermalLevel::critical:
        return {Status::high, "High"};
    }
    return {};
}

std::string temperatureSentence(const ThermalSnapshot& thermal, const PlatformWords& words) {
    if (!thermal.cpuTemperature)
        return fmt::format("CPU temperature is unavailable on this {}.", words.computer);
    std::string text = fmt::format("CPU {} average", Formatters::temperature(thermal.cpuTemperature));
    if (thermal.cpuHottest)
        text += fmt::format(", {} hottest sensor", Formatters::temperature(thermal.cpuHottest));
    return text + ".";
}

HealthCategory heat(const ThermalSnapshot& thermal, const PlatformWords& words) {
    HealthCategory made =
        category("thermal", "Thermals", "thermometer.medium", Page::thermal, thermalVerdict(thermal.state));
    made.evidence = {fmt::format("{} thermal state: {}.", words.systemLabel, label(thermal.state)),
                     temperatureSentence(thermal, words)};
    if (!thermal.fans.empty())
        made.evidence.push_back(fmt::format("Fans: {}.", EvidenceText::fans(thermal.fans)));
    return made;
}

/// "Busiest: A 30%, B 5.1%."; empty when none does enough to be named.
std::string busiestSentence(std::vector<const ApplicationSnapshot*> apps) {
    constexpr std::size_t mostNamed = 3;
    std::erase_if(apps, [](const auto* app) { return !std::isfinite(app->cpu) || !(app->cpu > 0.05); });
    std::ranges::stable_sort(apps, std::ranges::greater(), &ApplicationSnapshot::cpu);
    apps.resize(std::min(apps.size(), mostNamed));
    std::string names;
    for (const ApplicationSnapshot* app : apps)
        names += fmt::format("{}{} {}", names.empty() ? "" : ", ", app->name, Formatters::cpu(app->cpu));
    return names.empty() ? names : fmt::format("Busiest: {}.", names);
}

HealthCategory backgroundActivity(const SystemSnapshot& snapshot) {
    double sum = 0;
    std::vector<const ApplicationSnapshot*> background;
    background.reserve(snapshot.applications.size());
    for (const ApplicationSnapshot& app : snapshot.applications) {
        if (app.isRunningApp)
            continue;
        Figures::grow(sum, app.cpu);
        background.push_back(&app);
    }
    HealthCategory made =
        category("background", "Background Activity", "gearshape.2", Page::processes,
                 sum < 0.75 ? Verdict{Status::good, "Normal"} : Verdict{Status::elevated, "Elevated"});
    made.evidence.push_back(
        fmt::format("Background processes are using {} of CPU (100% = one core).", Formatters::cpu(sum)));
    if (std::string busiest = busiestSentence(std::move(background)); !busiest.empty())
        made.evidence.push_back(std::move(busiest));
    if (!snapshot.systemProcessMetricsIncluded)
        made.evidence.emplace_back("System processes are measured while the window or menu is open.");
    return made;
}

} // namespace

std::vector<HealthCategory> evaluate(const SystemSnapshot& snapshot, std::optional<double> cpuAverage5m,
                                     std::optional<double> pressureElevatedFor, const PlatformWords& words) {
    std::vector<HealthCategory> categories;
    categories.reserve(6);
    categories.push_back(processor(snapshot, cpuAverage5m));
    categories.push_back(memoryUse(snapshot.memory, pressureElevatedFor));
    categories.push_back(storageSpace(snapshot.disk.root()));
    if (snapshot.battery.isPresent)
        categories.push_back(batteryHealth(snapshot.battery, words));
    categories.push_back(heat(snapshot.thermal, words));
    categories.push_back(backgroundActivity(snapshot));
    return categories;
}

} // namespace ostrivane::HealthEvaluator
