#include "tests/history/GeneratedSnapshots.hpp"

#include <algorithm>
#include <array>
#include <string>

namespace ostrivane {

namespace {

constexpr double day = 86400;
constexpr double workingDay = 6 * 3600;
constexpr int knownApps = 120;

} // namespace

GeneratedSnapshots::GeneratedSnapshots(std::uint64_t seed, Date start, int days)
    : random(seed), snapshot(SystemSnapshot::empty(start)), end(days * day), wallClock(start.seconds),
      renamed(knownApps) {}

const SystemSnapshot* GeneratedSnapshots::next() {
    snapshot.interval = passTime();
    if (elapsed >= end)
        return nullptr;
    snapshot.timestamp = Date{wallClock + elapsed};
    readMachine();
    readSensors();
    changeApplications();
    return &snapshot;
}

// Not a distribution of the standard library: those differ between systems.
std::uint64_t GeneratedSnapshots::below(std::uint64_t bound) {
    return random() % bound;
}

/// Goes on to the next snapshot, and answers its interval.
double GeneratedSnapshots::passTime() {
    if (oneIn(300))
        wallClock += figure(57601, 0.25) - 7200;
    else if (oneIn(300))
        wallClock -= figure(240, 0.25); // back into the minute before, most often

    const double timeOfDay = elapsed - static_cast<double>(static_cast<std::int64_t>(elapsed / day)) * day;
    const bool isDayOff = static_cast<std::int64_t>(elapsed / day) % 7 == 6;
    if (timeOfDay > workingDay || isDayOff || oneIn(1500)) {
        const bool sleptUntilMorning = timeOfDay > workingDay || isDayOff;
        const double away = sleptUntilMorning ? day - timeOfDay + figure(3600, 0.25) : figure(28800, 0.25);
        elapsed += away;
        const std::array intervals = {0.0, away, 25.0}; // off, or suspended
        return intervals[below(intervals.size())];
    }

    if (denseLeft > 0)
        --denseLeft;
    else if (oneIn(250))
        denseLeft = 60;
    const double step = denseLeft > 0 ? 2 : 20 + figure(41, 0.25);
    elapsed += step;
    if (oneIn(100))
        return oneIn(2) ? 0 : -0.25;
    return step;
}

/// A reading of at least `least`, if there is one now. It draws one figure after the other: compilers differ in which
/// of two arguments of a call they draw first.
void GeneratedSnapshots::read(std::optional<double>& reading, double least, std::uint64_t bound, double unit) {
    const bool wasThere = reading.has_value();
    reading = least + figure(bound, unit);
    if (oneIn(50) == wasThere)
        reading.reset();
}

void GeneratedSnapshots::readMachine() {
    CPUSnapshot& cpu = snapshot.cpu;
    cpu.user = figure(600, 1.0 / 1024);
    cpu.system = figure(400, 1.0 / 1024);
    cpu.usage = cpu.user + cpu.system;

    MemorySnapshot& memory = snapshot.memory;
    memory.app = below(8'000'000'000);
    memory.wired = below(2'000'000'000);
    memory.compressed = below(3'000'000'000);
    memory.cached = below(4'000'000'000);
    memory.used = memory.app + memory.wired + memory.compressed;
    memory.swapUsed = oneIn(2) ? 0 : below(1'000'000'000);
    memory.availablePercent = static_cast<std::int64_t>(below(130)) - 15;
    memory.pressure = oneIn(40)   ? MemoryPressure::critical
                      : oneIn(20) ? MemoryPressure::warning
                                  : MemoryPressure::normal;

    snapshot.disk.readBytesPerSec = figure(100'000'000, 1);
    snapshot.disk.writeBytesPerSec = figure(50'000'000, 1);
    snapshot.network.inRate = figure(10'000'000, 1);
    snapshot.network.outRate = figure(1'000'000, 1);
}

void GeneratedSnapshots::readSensors() {
    read(snapshot.gpu.utilization, 0, 1025, 1.0 / 1024);

    BatterySnapshot& battery = snapshot.battery;
    battery.isPresent = battery.isPresent != oneIn(50);
    battery.percent = static_cast<std::int64_t>(below(101));
    read(battery.systemPowerW, 0, 4000, 1.0 / 64);

    ThermalSnapshot& thermal = snapshot.thermal;
    read(thermal.systemPowerW, 0, 4000, 1.0 / 64);
    read(thermal.cpuTemperature, 30, 500, 1.0 / 8);
    read(thermal.cpuHottest, 40, 500, 1.0 / 8);
    read(thermal.gpuTemperature, 30, 400, 1.0 / 8);
    if (oneIn(50))
        thermal.fans.resize(std::array<std::size_t, 4>{0, 1, 2, 4}[below(4)]);
    for (FanReading& fan : thermal.fans)
        fan.rpm = figure(5000, 1);
}

void GeneratedSnapshots::changeApplications() {
    std::vector<ApplicationSnapshot>& apps = snapshot.applications;
    if (crowdLeft > 0)
        --crowdLeft;
    else if (oneIn(400))
        crowdLeft = 6;
    const std::size_t fewest = crowdLeft > 0 ? 62 : 2;
    const std::size_t most = crowdLeft > 0 ? 80 : 7;

    while (!apps.empty() && (apps.size() > most || oneIn(30))) {
        const auto leaving = static_cast<std::ptrdiff_t>(below(apps.size()));
        apps.erase(apps.begin() + leaving);
        ids.erase(ids.begin() + leaving);
    }
    while (apps.size() < fewest || (apps.size() < most && oneIn(30))) {
        const int id = static_cast<int>(below(knownApps));
        if (std::find(ids.begin(), ids.end(), id) != ids.end())
            continue;
        int& renames = renamed[static_cast<std::size_t>(id)];
        renames += oneIn(3) ? 1 : 0;
        const std::string number = std::to_string(id);
        ApplicationSnapshot app;
        app.key = "/usr/share/applications/org.example.Application" + number + ".desktop";
        app.name = "Application " + number + (renames > 0 ? ", version " + std::to_string(renames) : "");
        if (id % 3 != 0)
            app.bundleID = "org.example.Application" + number;
        apps.push_back(std::move(app));
        ids.push_back(id);
    }
    for (std::size_t at = 0; at < apps.size(); ++at)
        readApplication(apps[at], ids[at]);
}

void GeneratedSnapshots::readApplication(ApplicationSnapshot& app, int id) {
    // Its own part of the memory keeps applications apart.
    const auto own = static_cast<std::uint64_t>(id);
    const bool isQuiet = id % 2 == 0;
    if (isQuiet) {
        app.cpu = figure(3, 1.0 / 1024);
        app.memory = (below(4096) + 18432) * 1024 + own;
        app.diskReadRate = figure(1000, 1);
        app.diskWriteRate = oneIn(8) ? figure(3, 1) : 0;
        app.netInRate = figure(16, 1);
        app.netOutRate = figure(8, 1);
        app.powerW = figure(2, 1.0 / 1024);
        app.gpu.reset();
        return;
    }
    app.cpu = figure(512, 1.0 / 64);
    app.memory = below(2'000'000) * 1024 + own;
    app.diskReadRate = figure(10'000'000, 1);
    app.diskWriteRate = figure(5'000'000, 1);
    read(app.netInRate, 0, 1'000'000, 1);
    read(app.netOutRate, 0, 100'000, 1);
    read(app.powerW, 0, 2000, 1.0 / 64);
    read(app.gpu, 0, 1025, 1.0 / 1024);
}

} // namespace ostrivane
