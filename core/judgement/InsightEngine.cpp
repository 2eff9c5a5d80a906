#include "core/judgement/InsightEngine.hpp"

#include "core/judgement/EvidenceText.hpp"
#include "core/judgement/Figures.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/Page.hpp"
#include "core/model/PlatformWords.hpp"
#include "core/model/Saturating.hpp"
#include "core/model/SystemSnapshot.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace ostrivane::InsightEngine {

namespace {

using Level = Insight::Level;
using Insights = std::vector<Insight>;

constexpr std::uint64_t gibibyte = 1ULL << 30;
constexpr std::string_view systemKey = "system";

struct Situation {
    const SystemSnapshot& snapshot;
    const InsightContext& context;
    const PlatformWords& words;
};

std::string pageID(Page page) {
    return std::string(rawValue(page));
}

Level noticeIf(bool isNotice) {
    return isNotice ? Level::notice : Level::info;
}

void findMemoryShare(const Situation& now, Insights& found) {
    std::uint64_t total = 0;
    for (const ApplicationSnapshot& app : now.snapshot.applications)
        if (app.key != systemKey)
            total = saturatingSum(total, app.memory);
    const auto* top = Figures::largest(now.snapshot.applications, [](const auto& app) {
        return app.key == systemKey ? std::nullopt : std::optional(static_cast<double>(app.memory));
    });
    if (!top || top->memory <= gibibyte)
        return;
    const double share = static_cast<double>(top->memory) / static_cast<double>(total);
    if (share < 0.3)
        return;
    found.push_back(
        {.id = "mem-share",
         .level = noticeIf(share >= 0.5),
         .symbol = "memorychip",
         .title =
             fmt::format("{} is responsible for {}% of application memory", top->name, Formatters::whole(share * 100)),
         .evidence = fmt::format("{} across {} processes, out of {} used by all apps.", Formatters::bytes(top->memory),
                                 top->processCount(), Formatters::bytes(total)),
         .appKey = top->key,
         .destination = pageID(Page::memory)});
}

void findPressure(const Situation& now, Insights& found) {
    const std::optional<double> elapsed = now.context.pressureElevatedFor;
    if (!elapsed || !(*elapsed >= 60))
        return;
    const MemorySnapshot& memory = now.snapshot.memory;
    found.push_back(
        {.id = "pressure",
         .level = Level::warning,
         .symbol = "gauge.with.dots.needle.67percent",
         .title = fmt::format("Your {} has been under {} memory pressure for {}", now.words.computer,
                              Text::lowered(std::string(label(memory.pressure))), Formatters::duration(*elapsed)),
         .evidence = fmt::format("Memory pressure {}%, {} compressed, {} swap.", memory.pressurePercent(),
                                 Formatters::bytes(memory.compressed), Formatters::bytes(memory.swapUsed)),
         .destination = pageID(Page::memory)});
}

void findSwap(const Situation& now, Insights& found) {
    const MemorySnapshot& memory = now.snapshot.memory;
    if (memory.swapUsed <= gibibyte || memory.swapIsMemory)
        return;
    found.push_back(
        {.id = "swap",
         .level = noticeIf(memory.swapUsed > 4 * gibibyte),
         .symbol = "arrow.left.arrow.right",
         .title = fmt::format("{} is using {} of swap", now.words.systemAtStart, Formatters::bytes(memory.swapUsed)),
         .evidence = fmt::format("Swap means memory contents were written to disk because RAM ran short. "
                                 "Swap-outs right now: {}.",
                                 Formatters::whole(memory.swapOutRate)),
         .destination = pageID(Page::memory)});
}

std::string containersText(const std::optional<DockerStatus>& docker, const PlatformWords& words) {
    const auto running = docker ? std::ranges::count(docker->containers, "running", &DockerContainer::state) : 0;
    if (running == 0)
        return std::string(words.unseenContainersMemory);
    return fmt::format("{} running container{}. {}", running, running == 1 ? "" : "s", words.containerMemory);
}

void findDocker(const Situation& now, Insights& found) {
    std::uint64_t sum = 0;
    for (const ApplicationSnapshot& app : now.snapshot.applications)
        if (Text::containsCaseless(app.name, "docker") || Text::containsCaseless(app.name, "orbstack"))
            sum = saturatingSum(sum, app.memory);
    if (sum <= gibibyte)
        return;
    found.push_back({.id = "docker",
                     .level = noticeIf(sum > 4 * gibibyte),
                     .symbol = "shippingbox",
                     .title = fmt::format("Docker is using {}", Formatters::bytes(sum)),
                     .evidence = containersText(now.snapshot.docker, now.words),
                     .destination = pageID(Page::projects)});
}

void findLongServer(const Situation& now, Insights& found) {
    constexpr double day = 86400;
    const auto* longest = Figures::largest(now.snapshot.devServers, [](const auto& server) { return server.uptime; });
    if (!longest || longest->uptime < day)
        return;
    found.push_back(
        {.id = "long-server",
         .level = Level::info,
         .symbol = "server.rack",
         .title = fmt::format("A development server has been running for {}", Formatters::duration(longest->uptime)),
         .evidence = fmt::format("{} on port {}, {}, {}.", longest->kind, EvidenceText::ports(longest->ports),
                                 longest->activity, Formatters::bytes(longest->memory)),
         .destination = pageID(Page::projects)});
}

void findIdleServers(const Situation& now, Insights& found) {
    std::int64_t count = 0;
    std::uint64_t memory = 0;
    std::vector<std::uint16_t> ports;
    for (const DevServer& server : now.snapshot.devServers) {
        if (!server.isIdle)
            continue;
        ++count;
        memory = saturatingSum(memory, server.memory);
        ports.insert(ports.end(), server.ports.begin(), server.ports.end());
    }
    if (count == 0)
        return;
    found.push_back({.id = "idle-servers",
                     .level = Level::notice,
                     .symbol = "moon.zzz",
                     .title = count == 1 ? "1 dev server looks idle" : fmt::format("{} dev servers look idle", count),
                     .evidence = fmt::format("Together they hold {} and ports {}.", Formatters::bytes(memory),
                                             EvidenceText::ports(ports)),
                     .destination = pageID(Page::projects)});
}

void findDrain(const Situation& now, Insights& found) {
    const auto current = now.context.currentDrainPerHour;
    const auto typical = now.context.typicalDrainPerHour;
    if (!current || !typical || !(*current > 8 && *typical > 0 && *current > 1.5 * *typical))
        return;
    found.push_back({.id = "drain",
                     .level = Level::notice,
                     .symbol = "battery.25percent",
                     .title = "Your battery is draining faster than usual",
                     .evidence = fmt::format("{}% per hour now, versus {}% per hour on battery over the past week.",
                                             Formatters::whole(*current), Formatters::whole(*typical)),
                     .destination = pageID(Page::battery)});
}

void findPowerShare(const Situation& now, Insights& found) {
    const std::optional<double> total = now.snapshot.totalAppPower();
    const auto* top = Figures::largest(
        now.snapshot.applications, [](const auto& app) { return app.key == systemKey ? std::nullopt : app.powerW; });
    if (!total || !(*total > 0.5) || !top)
        return;
    const double share = *top->powerW / *total;
    if (share < 0.4)
        return;
    found.push_back({.id = "power-share",
                     .level = Level::info,
                     .symbol = "bolt",
                     .title = fmt::format("{} is drawing {}% of app power", top->name, Formatters::whole(share * 100)),
                     .evidence = fmt::format("{} of {} measured across all apps right now.",
                                             Formatters::power(top->powerW), Formatters::power(total)),
                     .appKey = top->key,
                     .destination = pageID(Page::battery)});
}

void findStorageGrowth(const Situation& now, Insights& found) {
    constexpr std::int64_t leastGrowth = 1'000'000'000;
    for (const InsightContext::StorageGrowth& growth : now.context.storageGrowth)
        if (growth.bytes > leastGrowth)
            found.push_back({.id = "storage-" + growth.path,
                             .level = Level::info,
                             .symbol = "externaldrive.badge.plus",
                             .title = fmt::format("{} grew by {} since {}", growth.name,
                                                  Formatters::storage(static_cast<std::uint64_t>(growth.bytes)),
                                                  Formatters::day(growth.since)),
                             .evidence = growth.path,
                             .destination = pageID(Page::storage)});
}

void findLowDisk(const Situation& now, Insights& found) {
    const std::optional<VolumeInfo> root = now.snapshot.disk.root();
    if (!root || root->total == 0)
        return;
    const double fraction = static_cast<double>(root->available) / static_cast<double>(root->total);
    if (fraction >= 0.1)
        return;
    found.push_back({.id = "disk-low",
                     .level = Level::warning,
                     .symbol = "internaldrive",
                     .title = fmt::format("{} has {} free", root->name, Formatters::storage(root->available)),
                     .evidence = fmt::format("{}% of {}. {} needs free space for swap, updates and caches.",
                                             Formatters::whole(fraction * 100), Formatters::storage(root->total),
                                             now.words.systemAtStart),
                     .destination = pageID(Page::storage)});
}

void findModels(const Situation& now, Insights& found) {
    for (const AIWorkload& workload : now.snapshot.aiWorkloads) {
        const auto& models = workload.models;
        if (models.empty())
            continue;
        std::string evidence = "Process memory " + Formatters::bytes(workload.memory);
        if (workload.modelMemory)
            evidence += ", model " + Formatters::bytes(*workload.modelMemory);
        found.push_back({.id = fmt::format("ai-{}", workload.pid),
                         .level = Level::info,
                         .symbol = "brain",
                         .title = models.size() == 1
                                      ? fmt::format("{} has {} loaded", workload.runtime, models.front())
                                      : fmt::format("{} has {} models loaded", workload.runtime, models.size()),
                         .evidence = evidence + ".",
                         .destination = pageID(Page::ai)});
    }
}

void findHeat(const Situation& now, Insights& found) {
    const ThermalSnapshot& thermal = now.snapshot.thermal;
    if (thermal.state != ThermalLevel::serious && thermal.state != ThermalLevel::critical)
        return;
    std::string evidence = "CPU " + Formatters::temperature(thermal.cpuTemperature);
    if (!thermal.fans.empty())
        evidence += ", " + EvidenceText::fans(thermal.fans);
    found.push_back({.id = "thermal",
                     .level = Level::warning,
                     .symbol = "thermometer.high",
                     .title = fmt::format("{} reports {} thermal pressure", now.words.systemAtStart,
                                          Text::lowered(std::string(label(thermal.state)))),
                     .evidence = evidence + ".",
                     .destination = pageID(Page::thermal)});
}

/// In the order in which findings of one level are shown.
constexpr std::array findings = {findMemoryShare,   findPressure,    findSwap,   findDocker,
                                 findLongServer,    findIdleServers, findDrain,  findPowerShare,
                                 findStorageGrowth, findLowDisk,     findModels, findHeat};

} // namespace

std::vector<Insight> insights(const SystemSnapshot& snapshot, const InsightContext& context,
                              const PlatformWords& words) {
    Insights found;
    for (const auto find : findings)
        find({snapshot, context, words}, found);
    std::ranges::stable_sort(found, std::ranges::greater(), &Insight::level);
    return found;
}

} // namespace ostrivane::InsightEngine
