#include "app/model/LiveSeries.hpp"

#include "core/model/Statistics.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

std::size_t firstSince(const std::vector<TimedValue>& points, double cutoff) {
    return static_cast<std::size_t>(
        std::ranges::find_if(points, [&](const TimedValue& point) { return point.time >= cutoff; }) - points.begin());
}

std::optional<double> meanSpeed(const std::vector<FanReading>& fans) {
    if (fans.empty())
        return std::nullopt;
    double sum = 0;
    for (const FanReading& fan : fans)
        sum += fan.rpm;
    return sum / static_cast<double>(fans.size());
}

} // namespace

void LiveSeries::push(LiveKey key, double time, std::optional<double> value) {
    if (!value || !std::isfinite(*value))
        return;
    auto& points = series[static_cast<std::size_t>(key)];
    if (!points.empty() && points.back().time > time) // the clock was set back: what lies ahead would never grow old
        std::erase_if(points, [&](const TimedValue& point) { return point.time > time; });
    points.push_back({time, *value});
    if (time - points.front().time > window)
        std::erase_if(points, [&](const TimedValue& point) { return time - point.time > window; });
}

void LiveSeries::add(const SystemSnapshot& snapshot) {
    const double time = snapshot.timestamp.seconds;
    const auto number = [](auto value) { return static_cast<double>(value); };
    const BatterySnapshot& battery = snapshot.battery;
    push(LiveKey::cpu, time, snapshot.cpu.usage);
    push(LiveKey::cpuUser, time, snapshot.cpu.user);
    push(LiveKey::cpuSystem, time, snapshot.cpu.system);
    push(LiveKey::memUsed, time, number(snapshot.memory.used));
    push(LiveKey::memPressure, time, number(snapshot.memory.pressurePercent()));
    push(LiveKey::swap, time, number(snapshot.memory.swapUsed));
    push(LiveKey::gpu, time, snapshot.gpu.utilization);
    push(LiveKey::diskRead, time, snapshot.disk.readBytesPerSec);
    push(LiveKey::diskWrite, time, snapshot.disk.writeBytesPerSec);
    push(LiveKey::netIn, time, snapshot.network.inRate);
    push(LiveKey::netOut, time, snapshot.network.outRate);
    push(LiveKey::cpuTemp, time, snapshot.thermal.cpuTemperature);
    push(LiveKey::gpuTemp, time, snapshot.thermal.gpuTemperature);
    push(LiveKey::power, time, snapshot.systemPowerW());
    push(LiveKey::fan, time, meanSpeed(snapshot.thermal.fans));
    if (battery.isPresent)
        push(LiveKey::battery, time, number(battery.percent));
    addCores(snapshot);
}

void LiveSeries::addCores(const SystemSnapshot& snapshot) {
    const auto& cores = snapshot.cpu.cores;
    if (coreHistory.size() != cores.size())
        coreHistory.assign(cores.size(), {});
    for (std::size_t index = 0; index < cores.size(); ++index) {
        auto& loads = coreHistory[index];
        loads.push_back(cores[index].usage);
        if (loads.size() > coreValues)
            loads.erase(loads.begin(), loads.end() - coreValues);
    }
}

std::optional<double> LiveSeries::average(LiveKey key, double seconds) const {
    const auto& points = series[static_cast<std::size_t>(key)];
    if (points.empty())
        return std::nullopt;
    return Statistics::mean(std::span(points).subspan(firstSince(points, points.back().time - seconds)));
}

} // namespace ostrivane
