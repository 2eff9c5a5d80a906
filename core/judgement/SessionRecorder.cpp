#include "core/judgement/SessionRecorder.hpp"

#include "core/judgement/Figures.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace ostrivane {

namespace {

constexpr double longestInterval = 60; // seconds: no rate is taken to have held for longer, as over a suspend
constexpr std::uint64_t noteworthyMemory = 100ULL << 20;
constexpr std::size_t mostApps = 25;
constexpr std::size_t mostProcesses = 15;

/// The `limit` lines with the most processor time; those with equal time in the order of `identity`.
template <class Line, class Identity>
std::vector<Line> busiest(std::vector<Line> lines, std::size_t limit, Identity identity) {
    const auto kept = lines.begin() + static_cast<std::ptrdiff_t>(std::min(lines.size(), limit));
    std::partial_sort(lines.begin(), kept, lines.end(), [&](const Line& a, const Line& b) {
        return std::tie(b.cpuSeconds, a.*identity) < std::tie(a.cpuSeconds, b.*identity);
    });
    lines.erase(kept, lines.end());
    return lines;
}

bool isNoteworthy(const SessionSummary::AppLine& line) {
    return line.cpuSeconds > 0.5 || line.energyJ > 1 || line.peakMemory > static_cast<double>(noteworthyMemory);
}

} // namespace

void SessionRecorder::Readings::add(double reading) {
    if (!std::isfinite(reading))
        return;
    Figures::grow(sum, reading);
    peak = std::max(peak, reading);
    ++count;
}

void SessionRecorder::Readings::add(std::optional<double> reading) {
    if (reading)
        add(*reading);
}

SessionSummary::Stat SessionRecorder::Readings::stat() const {
    return {sum / static_cast<double>(std::max<std::int64_t>(count, 1)), peak};
}

std::optional<SessionSummary::Stat> SessionRecorder::Readings::statIfAny() const {
    return count >= 1 ? std::optional(stat()) : std::nullopt;
}

SessionRecorder::SessionRecorder(std::string name, Date start) : title(std::move(name)), began(start) {}

void SessionRecorder::add(const SystemSnapshot& snapshot) {
    noteRunning(snapshot.applications);
    if (!(snapshot.interval > 0))
        return;
    const double seconds = std::min(snapshot.interval, longestInterval);
    elapsed += seconds;
    ++samples;
    count(snapshot, seconds);
    for (const ApplicationSnapshot& app : snapshot.applications)
        count(app, seconds);
    for (const ProcessSnapshot& process : snapshot.processes)
        count(process, seconds);
}

void SessionRecorder::noteRunning(const std::vector<ApplicationSnapshot>& applications) {
    std::size_t running = 0;
    bool isSame = true; // as on nearly every tick: then no text is copied
    for (const ApplicationSnapshot& app : applications) {
        if (!app.isRunningApp)
            continue;
        ++running;
        isSame = isSame && lastApps.contains(app.key);
    }
    if (!isSame || running != lastApps.size()) {
        lastApps.clear();
        for (const ApplicationSnapshot& app : applications)
            if (app.isRunningApp)
                lastApps.insert(app.key);
    }
    if (!initialApps)
        initialApps = lastApps;
}

void SessionRecorder::count(const SystemSnapshot& snapshot, double seconds) {
    cpu.add(snapshot.cpu.usage);
    memory.add(static_cast<double>(snapshot.memory.used));
    gpu.add(snapshot.gpu.utilization);
    temperature.add(snapshot.thermal.cpuTemperature);
    power.add(snapshot.systemPowerW());
    swapPeak = std::max(swapPeak, static_cast<double>(snapshot.memory.swapUsed));
    pressurePeak = std::max(pressurePeak, snapshot.memory.pressure);
    Figures::grow(diskRead, snapshot.disk.readBytesPerSec * seconds);
    Figures::grow(diskWrite, snapshot.disk.writeBytesPerSec * seconds);
    Figures::grow(netIn, snapshot.network.inRate * seconds);
    Figures::grow(netOut, snapshot.network.outRate * seconds);
    if (!snapshot.battery.isPresent)
        return;
    batteryEnd = snapshot.battery.percent;
    if (!batteryStart)
        batteryStart = batteryEnd;
}

void SessionRecorder::count(const ApplicationSnapshot& app, double seconds) {
    const auto [place, isNew] = apps.try_emplace(app.key);
    App& sums = place->second;
    const auto bytes = static_cast<double>(app.memory);
    if (isNew) {
        sums.line.key = app.key;
        sums.line.name = app.name;
        sums.firstMemory = bytes;
    }
    sums.name = app.name;
    ++sums.samples;
    sums.lastMemory = bytes;
    sums.line.peakMemory = std::max(sums.line.peakMemory, bytes);
    Figures::grow(sums.line.cpuSeconds, app.cpu * seconds);
    Figures::grow(sums.line.energyJ, app.powerW.value_or(0) * seconds);
    Figures::grow(sums.line.diskWrite, app.diskWriteRate * seconds);
    Figures::grow(sums.line.network, (app.netInRate.value_or(0) + app.netOutRate.value_or(0)) * seconds);
}

void SessionRecorder::count(const ProcessSnapshot& process, double seconds) {
    if (!(process.cpu > 0.005) && process.memory <= noteworthyMemory)
        return;
    const auto [place, isNew] = procs.try_emplace(process.pid);
    SessionSummary::ProcessLine& line = place->second;
    if (isNew) {
        line.pid = process.pid;
        line.name = process.name;
        line.app = nameOf(process.appKey);
    }
    Figures::grow(line.cpuSeconds, process.cpu * seconds);
    line.peakMemory = std::max(line.peakMemory, static_cast<double>(process.memory));
}

const std::string& SessionRecorder::nameOf(const std::string& key) const {
    const auto found = apps.find(key);
    return found == apps.end() ? key : found->second.name;
}

SessionSummary SessionRecorder::summary(Date end) const {
    SessionSummary made = figures(end);
    made.apps = busiestApps();
    made.processes = busiestProcesses();
    made.launchedApps = namesIn(lastApps, initialApps.value_or(Keys()));
    made.quitApps = namesIn(initialApps.value_or(Keys()), lastApps);
    return made;
}

SessionSummary SessionRecorder::figures(Date end) const {
    return {.name = title,
            .start = began,
            .end = end,
            .samples = samples,
            .cpu = cpu.stat(),
            .memoryUsed = memory.stat(),
            .memoryPressurePeak = std::string(label(pressurePeak)),
            .swapPeak = swapPeak,
            .gpu = gpu.statIfAny(),
            .cpuTemperature = temperature.statIfAny(),
            .systemPower = power.statIfAny(),
            .diskRead = diskRead,
            .diskWrite = diskWrite,
            .netIn = netIn,
            .netOut = netOut,
            .batteryStart = batteryStart,
            .batteryEnd = batteryEnd,
            .apps = {},
            .processes = {},
            .launchedApps = {},
            .quitApps = {}};
}

SessionSummary::AppLine SessionRecorder::finished(const App& app) const {
    SessionSummary::AppLine line = app.line;
    line.avgCPU = line.cpuSeconds / std::max(elapsed, 1.0);
    line.memoryChange = app.lastMemory - app.firstMemory;
    line.presentFraction = static_cast<double>(app.samples) / static_cast<double>(std::max<std::int64_t>(samples, 1));
    return line;
}

std::vector<SessionSummary::AppLine> SessionRecorder::busiestApps() const {
    std::vector<SessionSummary::AppLine> lines;
    for (const auto& entry : apps)
        if (isNoteworthy(entry.second.line))
            lines.push_back(finished(entry.second));
    return busiest(std::move(lines), mostApps, &SessionSummary::AppLine::key);
}

std::vector<SessionSummary::ProcessLine> SessionRecorder::busiestProcesses() const {
    std::vector<SessionSummary::ProcessLine> lines;
    lines.reserve(procs.size());
    for (const auto& entry : procs)
        lines.push_back(entry.second);
    return busiest(std::move(lines), mostProcesses, &SessionSummary::ProcessLine::pid);
}

std::vector<std::string> SessionRecorder::namesIn(const Keys& present, const Keys& absent) const {
    std::vector<std::string> names;
    for (const std::string& key : present)
        if (!absent.contains(key))
            names.push_back(nameOf(key));
    std::ranges::sort(names);
    return names;
}

} // namespace ostrivane
