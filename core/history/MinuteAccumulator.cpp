#include "core/history/MinuteAccumulator.hpp"

#include "core/history/WholeSeconds.hpp"
#include "core/model/PressureLevel.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace ostrivane {

namespace {

constexpr double longestWeight = 60; // seconds: no rate is taken to have held for longer, as over a suspend
constexpr std::size_t mostApps = 60;

constexpr std::array systemMeans = {
    &SystemRow::cpu,      &SystemRow::cpuUser,       &SystemRow::cpuSystem, &SystemRow::memUsed,  &SystemRow::memApp,
    &SystemRow::memWired, &SystemRow::memCompressed, &SystemRow::memCached, &SystemRow::swapUsed, &SystemRow::pressure};

// In this order a NaN leaves the maximum as it was.
void raise(double& maximum, double value) {
    maximum = std::max(maximum, value);
}

void raise(std::optional<double>& maximum, double value) {
    maximum = std::max(maximum.value_or(0), value);
}

void addPresent(std::optional<double>& sum, std::int64_t& count, std::optional<double> value) {
    if (!value)
        return;
    sum = sum.value_or(0) + *value;
    ++count;
}

void toMean(std::optional<double>& sum, std::int64_t count) {
    if (sum && count >= 1)
        *sum /= static_cast<double>(count);
}

std::optional<double> meanSpeed(const std::vector<FanReading>& fans) {
    if (fans.empty())
        return {};
    const double sum = std::accumulate(fans.begin(), fans.end(), 0.0,
                                       [](double before, const FanReading& fan) { return before + fan.rpm; });
    return sum / static_cast<double>(fans.size());
}

/// Whether a row is worth a line in the file. What an application read does not make it so.
bool isNoteworthy(const AppRow& row) {
    return row.cpu > 0.001 || row.memMax > 20971520 || row.diskWrite > 0 || row.netIn + row.netOut > 1024 ||
           row.energyJ > 0.05;
}

/// How much a row weighs against others. A NaN counts as the lowest: it would break the order of the sort.
double score(const AppRow& row) {
    const double score = row.cpu * 4 + row.mem / 1e9;
    return std::isnan(score) ? -std::numeric_limits<double>::infinity() : score;
}

} // namespace

MinuteAccumulator::MinuteAccumulator(std::int64_t secondsABucket) : resolution(secondsABucket) {}

std::optional<FinishedBucket> MinuteAccumulator::add(const SystemSnapshot& snapshot) {
    const std::int64_t start = wholeSeconds(snapshot.timestamp) / resolution * resolution;
    std::optional<FinishedBucket> finished;
    if (bucket != start) {
        finished = finish();
        open(start);
    }
    if (snapshot.interval > 0) // NaN counts nothing either
        count(snapshot, std::min(snapshot.interval, longestWeight));
    return finished;
}

std::optional<FinishedBucket> MinuteAccumulator::finish() {
    if (!std::exchange(bucket, std::nullopt) || sys.samples < 1)
        return {};
    return FinishedBucket{finishedSystem(), finishedApps()};
}

const MinuteAccumulator::AppName* MinuteAccumulator::appName(const std::string& key) const {
    const auto found = appNames.find(key);
    return found == appNames.end() ? nullptr : &found->second;
}

void MinuteAccumulator::open(std::int64_t start) {
    bucket = start;
    sys = {.bucket = start, .res = resolution};
    gpuSamples = battSamples = powerSamples = tempSamples = gpuTempSamples = fanSamples = 0;
    // Most applications of one minute are there in the next: their places are kept for it.
    boost::unordered::erase_if(apps, [](const auto& entry) { return entry.second.samples == 0; });
    for (auto& entry : apps)
        entry.second = {};
}

void MinuteAccumulator::count(const SystemSnapshot& snapshot, double weight) {
    ++sys.samples;

    sys.cpu += snapshot.cpu.usage;
    raise(sys.cpuMax, snapshot.cpu.usage);
    sys.cpuUser += snapshot.cpu.user;
    sys.cpuSystem += snapshot.cpu.system;

    const MemorySnapshot& memory = snapshot.memory;
    sys.memUsed += static_cast<double>(memory.used);
    raise(sys.memUsedMax, static_cast<double>(memory.used));
    sys.memApp += static_cast<double>(memory.app);
    sys.memWired += static_cast<double>(memory.wired);
    sys.memCompressed += static_cast<double>(memory.compressed);
    sys.memCached += static_cast<double>(memory.cached);
    sys.swapUsed += static_cast<double>(memory.swapUsed);
    sys.pressure += static_cast<double>(memory.pressurePercent());
    raise(sys.pressureLevelMax, pressureLevel(memory.pressure));

    addPresent(sys.gpu, gpuSamples, snapshot.gpu.utilization);
    if (snapshot.gpu.utilization)
        raise(sys.gpuMax, *snapshot.gpu.utilization);

    sys.diskRead += snapshot.disk.readBytesPerSec * weight;
    sys.diskWrite += snapshot.disk.writeBytesPerSec * weight;
    sys.netIn += snapshot.network.inRate * weight;
    sys.netOut += snapshot.network.outRate * weight;

    const BatterySnapshot& battery = snapshot.battery;
    const ThermalSnapshot& thermal = snapshot.thermal;
    if (battery.isPresent)
        addPresent(sys.batteryPct, battSamples, static_cast<double>(battery.percent));
    addPresent(sys.powerW, powerSamples, battery.systemPowerW ? battery.systemPowerW : thermal.systemPowerW);
    addPresent(sys.cpuTemp, tempSamples, thermal.cpuTemperature);
    if (thermal.cpuTemperature)
        raise(sys.cpuTempMax, thermal.cpuHottest.value_or(*thermal.cpuTemperature));
    addPresent(sys.gpuTemp, gpuTempSamples, thermal.gpuTemperature);
    addPresent(sys.fanRPM, fanSamples, meanSpeed(thermal.fans));

    for (const ApplicationSnapshot& app : snapshot.applications)
        count(app, weight);
}

void MinuteAccumulator::count(const ApplicationSnapshot& app, double weight) {
    const auto [place, isNew] = apps.try_emplace(app.key);
    if (isNew) // any other was given its name when it was new
        appNames.try_emplace(app.key, AppName{app.name, app.bundleID});

    AppSums& sums = place->second;
    ++sums.samples;
    const auto memory = static_cast<double>(app.memory);
    sums.cpu += app.cpu;
    raise(sums.cpuMax, app.cpu);
    sums.mem += memory;
    raise(sums.memMax, memory);
    sums.energyJ += app.powerW.value_or(0) * weight;
    sums.diskRead += app.diskReadRate * weight;
    sums.diskWrite += app.diskWriteRate * weight;
    sums.netIn += app.netInRate.value_or(0) * weight;
    sums.netOut += app.netOutRate.value_or(0) * weight;
    sums.gpu += app.gpu.value_or(0);
}

SystemRow MinuteAccumulator::finishedSystem() const {
    SystemRow row = sys;
    for (const auto mean : systemMeans)
        row.*mean /= static_cast<double>(row.samples);
    toMean(row.gpu, gpuSamples);
    toMean(row.batteryPct, battSamples);
    toMean(row.powerW, powerSamples);
    toMean(row.cpuTemp, tempSamples);
    toMean(row.gpuTemp, gpuTempSamples);
    toMean(row.fanRPM, fanSamples);
    return row;
}

std::vector<AppRow> MinuteAccumulator::finishedApps() const {
    std::vector<AppRow> rows;
    rows.reserve(apps.size());
    for (const auto& [key, sums] : apps) {
        if (sums.samples == 0)
            continue;
        AppRow row = sums;
        row.bucket = sys.bucket;
        row.res = sys.res;
        for (const auto mean : {&AppRow::cpu, &AppRow::mem, &AppRow::gpu})
            row.*mean /= static_cast<double>(row.samples);
        if (!isNoteworthy(row))
            continue;
        row.appKey = key;
        rows.push_back(std::move(row));
    }
    std::stable_sort(rows.begin(), rows.end(), [](const AppRow& a, const AppRow& b) { return score(a) > score(b); });
    if (rows.size() > mostApps)
        rows.resize(mostApps);
    return rows;
}

} // namespace ostrivane
