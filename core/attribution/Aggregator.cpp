#include "core/attribution/Aggregator.hpp"

#include "core/attribution/AppGrouper.hpp"
#include "core/model/Saturating.hpp"

#include <boost/unordered/unordered_flat_map.hpp>

#include <algorithm>
#include <functional>
#include <optional>
#include <string_view>

namespace ostrivane::Aggregator {

namespace {

void add(std::optional<double>& sum, const std::optional<double>& figure) {
    if (figure)
        sum = sum.value_or(0) + *figure;
}

/// An unknown start counts as the far future.
bool isEarlier(const std::optional<Date>& start, const std::optional<Date>& than) {
    return start && (!than || *start < *than);
}

void add(ApplicationSnapshot& app, const ProcessSnapshot& process) {
    const bool isFirst = app.pids.empty();
    app.pids.push_back(process.pid);
    app.cpu += process.cpu;
    app.memory = saturatingSum(app.memory, process.memory);
    app.diskReadRate += process.diskReadRate;
    app.diskWriteRate += process.diskWriteRate;
    add(app.netInRate, process.netInRate);
    add(app.netOutRate, process.netOutRate);
    add(app.powerW, process.powerW);
    add(app.gpu, process.gpu);
    app.threads += process.threads.value_or(0);
    app.hasRestricted = app.hasRestricted || process.isRestricted;
    if (isFirst || isEarlier(process.startTime, app.startTime))
        app.mainPID = process.pid;
    if (isEarlier(process.startTime, app.startTime))
        app.startTime = process.startTime;
}

/// With the sampler there, nothing measured is nothing used; without it, nothing is known.
std::optional<double> measured(const std::optional<double>& sum, bool isAvailable) {
    return isAvailable ? std::optional(sum.value_or(0)) : std::nullopt;
}

std::vector<ApplicationSnapshot> summedByKey(const std::vector<ProcessSnapshot>& processes) {
    std::vector<ApplicationSnapshot> apps;
    boost::unordered_flat_map<std::string_view, std::size_t, std::hash<std::string_view>> places;
    for (const ProcessSnapshot& process : processes) {
        const auto [place, isNew] = places.emplace(process.appKey, apps.size());
        if (isNew)
            apps.emplace_back().key = process.appKey;
        add(apps[place->second], process);
    }
    return apps;
}

} // namespace

std::vector<ApplicationSnapshot> applications(const std::vector<ProcessSnapshot>& processes, BundleInfoCache& bundles,
                                              const std::map<std::string, std::int32_t>& runningApps,
                                              bool networkAvailable, bool gpuAvailable) {
    auto apps = summedByKey(processes);
    for (ApplicationSnapshot& app : apps) {
        const BundleInfoCache::Info& info = bundles.info(app.key);
        app.name = info.name;
        app.bundleID = info.bundleID;
        if (app.key.starts_with('/'))
            app.bundlePath = app.key;
        std::sort(app.pids.begin(), app.pids.end());
        app.netInRate = measured(app.netInRate, networkAvailable);
        app.netOutRate = measured(app.netOutRate, networkAvailable);
        app.gpu = measured(app.gpu, gpuAvailable);
        app.isSystem = app.key == AppGrouper::systemKey || app.key.starts_with("/System/");
        const auto running = runningApps.find(app.key);
        app.isRunningApp = running != runningApps.end();
        if (app.isRunningApp)
            app.mainPID = running->second;
    }
    std::stable_sort(apps.begin(), apps.end(), [](const auto& a, const auto& b) { return a.memory > b.memory; });
    return apps;
}

} // namespace ostrivane::Aggregator
