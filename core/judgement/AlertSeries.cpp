#include "core/judgement/AlertSeries.hpp"

namespace ostrivane {

namespace {

constexpr double forgottenAfter = 600; // seconds

} // namespace

void AlertSeries::feed(const SystemSnapshot& snapshot) {
    const double now = snapshot.timestamp.seconds;
    for (const ApplicationSnapshot& app : snapshot.applications)
        feed(app, now);
    boost::unordered::erase_if(apps, [now](const auto& entry) { return now - entry.second.lastSeen > forgottenAfter; });

    swap.append(static_cast<double>(snapshot.memory.swapUsed), now);
    if (snapshot.thermal.cpuTemperature)
        cpuTemperature.append(*snapshot.thermal.cpuTemperature, now);
    thermal.append(rawValue(snapshot.thermal.state), now);
    // On mains power nothing is fed. A mark for it would be averaged with the percents of the same point, into a charge
    // that the battery never had.
    const BatterySnapshot& power = snapshot.battery;
    if (power.isPresent && power.state == BatterySnapshot::State::discharging && power.percent >= 0)
        battery.append(static_cast<double>(power.percent), now);

    if (snapshot.memory.pressure == MemoryPressure::normal)
        pressureElevatedSince.reset();
    else if (!pressureElevatedSince)
        pressureElevatedSince = now;
}

void AlertSeries::feed(const ApplicationSnapshot& app, double now) {
    AppSeries& series = apps[app.key];
    series.name = app.name;
    series.lastSeen = now;
    series.cpu.append(app.cpu, now);
    series.memory.append(static_cast<double>(app.memory), now);
    series.diskWrite.append(app.diskWriteRate, now);
    if (app.netInRate)
        series.network.append(*app.netInRate + app.netOutRate.value_or(0), now);
}

} // namespace ostrivane
