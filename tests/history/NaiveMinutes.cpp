#include "tests/history/NaiveMinutes.hpp"

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

// `reading` answers a figure of one of the items, or none; an absent one is left out.

template <class Items, class Reading>
double sum(const Items& items, Reading reading) {
    double total = 0;
    for (const auto& item : items)
        total += std::optional<double>(reading(item)).value_or(0);
    return total;
}

template <class Items, class Reading>
std::optional<double> mean(const Items& items, Reading reading) {
    const auto count = std::count_if(
        items.begin(), items.end(), [&](const auto& item) { return std::optional<double>(reading(item)).has_value(); });
    if (count == 0)
        return {};
    return sum(items, reading) / static_cast<double>(count);
}

template <class Items, class Reading>
std::optional<double> greatest(const Items& items, Reading reading) {
    std::optional<double> found;
    for (const auto& item : items)
        if (const std::optional<double> figure = reading(item); figure && (!found || *figure > *found))
            found = figure;
    return found;
}

double weight(const SystemSnapshot& snapshot) {
    return snapshot.interval > 60 ? 60 : snapshot.interval;
}

SystemRow systemRow(const std::vector<SystemSnapshot>& minute) {
    using S = SystemSnapshot;
    const auto present = [&](auto reading) { return mean(minute, reading); };
    const auto level = [&](auto reading) {
        return mean(minute, [&](const S& s) { return static_cast<double>(reading(s)); }).value();
    };
    const auto peak = [&](auto reading) { return greatest(minute, reading); };
    const auto moved = [&](auto rate) { return sum(minute, [&](const S& s) { return rate(s) * weight(s); }); };
    SystemRow row;
    row.cpu = level([](const S& s) { return s.cpu.usage; });
    row.cpuMax = peak([](const S& s) { return s.cpu.usage; }).value();
    row.cpuUser = level([](const S& s) { return s.cpu.user; });
    row.cpuSystem = level([](const S& s) { return s.cpu.system; });
    row.memUsed = level([](const S& s) { return s.memory.used; });
    row.memUsedMax = peak([](const S& s) { return static_cast<double>(s.memory.used); }).value();
    row.memApp = level([](const S& s) { return s.memory.app; });
    row.memWired = level([](const S& s) { return s.memory.wired; });
    row.memCompressed = level([](const S& s) { return s.memory.compressed; });
    row.memCached = level([](const S& s) { return s.memory.cached; });
    row.swapUsed = level([](const S& s) { return s.memory.swapUsed; });
    row.pressure = level([](const S& s) { return std::clamp<std::int64_t>(100 - s.memory.availablePercent, 0, 100); });
    row.pressureLevelMax = peak([](const S& s) { return std::exp2(static_cast<int>(s.memory.pressure)); }).value();
    row.gpu = present([](const S& s) { return s.gpu.utilization; });
    row.gpuMax = peak([](const S& s) { return s.gpu.utilization; });
    row.diskRead = moved([](const S& s) { return s.disk.readBytesPerSec; });
    row.diskWrite = moved([](const S& s) { return s.disk.writeBytesPerSec; });
    row.netIn = moved([](const S& s) { return s.network.inRate; });
    row.netOut = moved([](const S& s) { return s.network.outRate; });
    row.batteryPct = present([](const S& s) {
        return s.battery.isPresent ? std::optional(static_cast<double>(s.battery.percent)) : std::nullopt;
    });
    row.powerW =
        present([](const S& s) { return s.battery.systemPowerW ? s.battery.systemPowerW : s.thermal.systemPowerW; });
    row.cpuTemp = present([](const S& s) { return s.thermal.cpuTemperature; });
    row.cpuTempMax = peak([](const S& s) {
        return s.thermal.cpuTemperature && s.thermal.cpuHottest ? s.thermal.cpuHottest : s.thermal.cpuTemperature;
    });
    row.gpuTemp = present([](const S& s) { return s.thermal.gpuTemperature; });
    row.fanRPM = present([](const S& s) { return mean(s.thermal.fans, [](auto& fan) { return fan.rpm; }); });
    row.samples = static_cast<std::int64_t>(minute.size());
    return row;
}

/// An application in one snapshot, and the weight of that.
struct Appearance {
    const ApplicationSnapshot* app;
    double weight;
};

AppRow appRow(const std::vector<Appearance>& appearances) {
    using A = Appearance;
    const auto level = [&](auto reading) { return mean(appearances, reading).value(); };
    const auto peak = [&](auto reading) { return greatest(appearances, reading).value(); };
    const auto moved = [&](auto rate) { return sum(appearances, [&](const A& a) { return rate(a) * a.weight; }); };
    AppRow row;
    row.appKey = appearances.front().app->key;
    row.cpu = level([](const A& a) { return a.app->cpu; });
    row.cpuMax = peak([](const A& a) { return a.app->cpu; });
    row.mem = level([](const A& a) { return static_cast<double>(a.app->memory); });
    row.memMax = peak([](const A& a) { return static_cast<double>(a.app->memory); });
    row.energyJ = moved([](const A& a) { return a.app->powerW.value_or(0); });
    row.diskRead = moved([](const A& a) { return a.app->diskReadRate; });
    row.diskWrite = moved([](const A& a) { return a.app->diskWriteRate; });
    row.netIn = moved([](const A& a) { return a.app->netInRate.value_or(0); });
    row.netOut = moved([](const A& a) { return a.app->netOutRate.value_or(0); });
    row.gpu = level([](const A& a) { return a.app->gpu.value_or(0); });
    row.samples = static_cast<std::int64_t>(appearances.size());
    return row;
}

bool isNoise(const AppRow& row) {
    return row.cpu <= 0.001 && row.memMax <= 20 * 1024 * 1024 && row.diskWrite <= 0 && row.netIn + row.netOut <= 1024 &&
           row.energyJ <= 0.05;
}

std::vector<AppRow> appRows(const std::vector<SystemSnapshot>& minute) {
    std::map<std::string, std::vector<Appearance>> appearances;
    for (const SystemSnapshot& snapshot : minute)
        for (const ApplicationSnapshot& app : snapshot.applications)
            appearances[app.key].push_back({&app, weight(snapshot)});
    std::vector<AppRow> rows;
    rows.reserve(appearances.size());
    for (const auto& [key, of] : appearances)
        rows.push_back(appRow(of));
    rows.erase(std::remove_if(rows.begin(), rows.end(), isNoise), rows.end());
    std::sort(rows.begin(), rows.end(),
              [](const AppRow& a, const AppRow& b) { return a.cpu * 4 + a.mem / 1e9 > b.cpu * 4 + b.mem / 1e9; });
    if (rows.size() > 60)
        rows.resize(60);
    return rows;
}

} // namespace

std::optional<FinishedBucket> NaiveMinutes::add(const SystemSnapshot& snapshot) {
    const double second = std::trunc(snapshot.timestamp.seconds);
    const double its = second - std::fmod(second, 60);
    std::optional<FinishedBucket> finished;
    if (its != start)
        finished = finish();
    start = its;
    if (!(snapshot.interval > 0))
        return finished;
    minute.push_back(snapshot);
    for (const ApplicationSnapshot& app : snapshot.applications)
        names.emplace(app.key, Name(app.name, app.bundleID));
    return finished;
}

std::optional<FinishedBucket> NaiveMinutes::finish() {
    if (minute.empty())
        return {};
    FinishedBucket finished{systemRow(minute), appRows(minute)};
    finished.system.bucket = static_cast<std::int64_t>(start);
    finished.system.res = 60;
    for (AppRow& row : finished.apps) {
        row.bucket = finished.system.bucket;
        row.res = 60;
    }
    minute.clear();
    return finished;
}

} // namespace ostrivane
