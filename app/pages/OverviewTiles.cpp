#include "app/pages/OverviewTiles.hpp"

#include "app/model/AppState.hpp"
#include "app/model/ChosenTemperature.hpp"
#include "app/pages/Figure.hpp"
#include "app/widgets/Strings.hpp"
#include "core/model/Formatters.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <string>
#include <utility>

namespace ostrivane {

namespace {

constexpr double wholeScale = 1;
constexpr double percentScale = 100;
constexpr double temperatureScale = 100; // degrees Celsius

/// "A · B", without what is empty.
QString joined(const std::vector<std::string>& parts) {
    std::string line;
    for (const std::string& part : parts)
        if (!part.empty())
            line += (line.empty() ? "" : " · ") + part;
    return text(line);
}

TileLine line(const AppState& state, LiveKey key, Series series, bool isDashed = false) {
    const std::span<const TimedValue> points = state.live[key];
    return {.series = series, .points = {points.begin(), points.end()}, .isDashed = isDashed};
}

OverviewTile cpuTile(const AppState& state) {
    const CPUSnapshot& cpu = state.snapshot->cpu;
    OverviewTile tile{.text = {.caption = QStringLiteral("CPU"), .value = text(Formatters::dash)}, .top = wholeScale};
    if (cpu.cores.empty()) // could not be read
        return tile;
    tile.text.value = text(Formatters::percent(cpu.usage));
    tile.text.detail = joined({"User " + Formatters::percent(cpu.user), "System " + Formatters::percent(cpu.system),
                               "Load " + Formatters::decimal(cpu.loadAverage[0], 2)});
    tile.lines = {line(state, LiveKey::cpu, Series::s1)};
    return tile;
}

OverviewTile memoryTile(const AppState& state) {
    const MemorySnapshot& memory = state.snapshot->memory;
    OverviewTile tile{.text = {.caption = QStringLiteral("Memory"), .value = text(Formatters::dash)}};
    if (memory.total == 0) // could not be read
        return tile;
    tile.text.value = text(Formatters::bytes(memory.used));
    tile.text.detail = joined({"of " + Formatters::bytes(memory.total),
                               memory.swapUsed > 0 ? "Swap " + Formatters::bytes(memory.swapUsed) : ""});
    if (memory.pressure != MemoryPressure::normal) {
        tile.text.condition = memory.pressure == MemoryPressure::warning ? Condition::elevated : Condition::high;
        tile.text.word = text(label(memory.pressure));
    }
    tile.lines = {line(state, LiveKey::memUsed, Series::s4)};
    tile.top = static_cast<double>(memory.total);
    return tile;
}

std::optional<OverviewTile> gpuTile(const AppState& state) {
    const GPUSnapshot& gpu = state.snapshot->gpu;
    if (!gpu.utilization && state.live[LiveKey::gpu].empty() && !state.gpuStatsToday)
        return std::nullopt;
    OverviewTile tile{.text = {.caption = QStringLiteral("GPU"), .value = text(Formatters::percent(gpu.utilization))},
                      .lines = {line(state, LiveKey::gpu, Series::s3)},
                      .top = wholeScale};
    if (const auto& today = state.gpuStatsToday)
        tile.text.detail = text(fmt::format("Today {} average, {} peak", Formatters::percent(today->avg),
                                            Formatters::percent(today->peak)));
    return tile;
}

/// "Fans 2310, 2486 rpm"; empty without fans.
std::string fanSpeeds(const std::vector<FanReading>& fans) {
    std::string speeds;
    for (const FanReading& fan : fans)
        speeds += (speeds.empty() ? "" : ", ") + Formatters::whole(fan.rpm);
    return speeds.empty() ? speeds : fmt::format("{} {} rpm", fans.size() == 1 ? "Fan" : "Fans", speeds);
}

std::optional<OverviewTile> temperatureTile(const AppState& state, TemperatureSource source) {
    const ThermalSnapshot& thermal = state.snapshot->thermal;
    if (!thermal.cpuTemperature && !thermal.gpuTemperature && !thermal.hottest &&
        state.live[LiveKey::cpuTemp].empty() && state.live[LiveKey::gpuTemp].empty())
        return std::nullopt;
    OverviewTile tile{.text = {.caption = QStringLiteral("Temperature"),
                               .value = text(Formatters::temperature(chosenTemperature(thermal, source)))},
                      .top = temperatureScale};
    std::string hottest;
    if (source == TemperatureSource::hottest)
        tile.text.corner = text(title(source)); // of which no series is kept
    else if (thermal.hottest)
        hottest = "Hottest " + Formatters::temperature(thermal.hottest);
    if (source == TemperatureSource::cpu)
        tile.lines = {line(state, LiveKey::cpuTemp, Series::s5)};
    if (source == TemperatureSource::gpu) {
        tile.text.corner = text(title(source));
        tile.lines = {line(state, LiveKey::gpuTemp, Series::s5)};
    }
    tile.text.detail = joined({std::move(hottest), fanSpeeds(thermal.fans)});
    return tile;
}

std::optional<OverviewTile> networkTile(const AppState& state) {
    const NetworkSnapshot& network = state.snapshot->network;
    if (network.interfaces.empty())
        return std::nullopt;
    OverviewTile tile{
        .text = {.caption = QStringLiteral("Network")},
        .lines = {line(state, LiveKey::netIn, Series::s1), line(state, LiveKey::netOut, Series::s2, true)}};
    tile.text.pairs = {{Series::s1, text("In " + Formatters::rate(network.inRate))},
                       {Series::s2, text("Out " + Formatters::rate(network.outRate))}};
    if (const auto primary = network.primary())
        tile.text.corner = text(primary->displayName);
    return tile;
}

/// Bytes since boot, which no machine that runs has none of.
bool countsDisks(const DiskSnapshot& disk) {
    return disk.totalRead > 0 || disk.totalWritten > 0;
}

std::optional<OverviewTile> diskTile(const AppState& state) {
    const DiskSnapshot& disk = state.snapshot->disk;
    const bool isCounted = countsDisks(disk);
    if (!isCounted && disk.volumes.empty())
        return std::nullopt;
    OverviewTile tile{.text = {.caption = QStringLiteral("Disk")}};
    const auto rate = [&](double bytesPerSec) {
        return Formatters::diskRate(isCounted ? std::optional(bytesPerSec) : std::nullopt);
    };
    tile.text.pairs = {{Series::s1, text("R " + rate(disk.readBytesPerSec))},
                       {Series::s2, text("W " + rate(disk.writeBytesPerSec))}};
    if (isCounted)
        tile.lines = {line(state, LiveKey::diskRead, Series::s1), line(state, LiveKey::diskWrite, Series::s2, true)};
    if (const auto root = disk.root(); root && root->total > 0)
        tile.text.corner = text(
            Formatters::whole(static_cast<double>(root->available) / static_cast<double>(root->total) * percentScale) +
            "% free");
    return tile;
}

/// "3h 12m left", "1h 5m to full"; empty when nobody knows.
std::string batteryTime(const BatterySnapshot& battery) {
    if (!battery.minutesRemaining)
        return {};
    switch (battery.state) {
    case BatterySnapshot::State::charging:
        return Formatters::minutes(battery.minutesRemaining) + " to full";
    case BatterySnapshot::State::discharging:
        return Formatters::minutes(battery.minutesRemaining) + " left";
    case BatterySnapshot::State::charged:
    case BatterySnapshot::State::acNotCharging:
        break;
    }
    return {};
}

std::optional<OverviewTile> batteryTile(const AppState& state) {
    const BatterySnapshot& battery = state.snapshot->battery;
    if (!battery.isPresent)
        return std::nullopt;
    return OverviewTile{
        .text = {.caption = QStringLiteral("Battery"),
                 .value = text(Formatters::percent(static_cast<double>(battery.percent) / percentScale)),
                 .detail = joined({std::string(rawValue(battery.state)), batteryTime(battery)})},
        .lines = {line(state, LiveKey::battery, Series::good)},
        .top = percentScale};
}

/// What the machine draws; where only applications tell of any, what they draw.
std::optional<OverviewTile> powerTile(const AppState& state) {
    const auto machine = state.snapshot->systemPowerW();
    const auto apps = state.snapshot->totalAppPower();
    const bool wasRead = !state.live[LiveKey::power].empty();
    if (!machine && !apps && !wasRead)
        return std::nullopt;
    OverviewTile tile{.text = {.caption = QStringLiteral("Power")}};
    if (!machine && !wasRead) {
        tile.text.value = text(Formatters::power(apps));
        tile.text.detail = QStringLiteral("All apps together");
        return tile;
    }
    tile.text.value = text(Formatters::power(machine));
    if (apps)
        tile.text.detail = text("All apps together " + Formatters::power(apps));
    tile.lines = {line(state, LiveKey::power, Series::s2)};
    return tile;
}

std::optional<OverviewTile> measuredTile(TileKind kind, const AppState& state, TemperatureSource source) {
    switch (kind) {
    case TileKind::cpu:
        return cpuTile(state);
    case TileKind::memory:
        return memoryTile(state);
    case TileKind::gpu:
        return gpuTile(state);
    case TileKind::temperature:
        return temperatureTile(state, source);
    case TileKind::network:
        return networkTile(state);
    case TileKind::disk:
        return diskTile(state);
    case TileKind::battery:
        return batteryTile(state);
    case TileKind::power:
        return powerTile(state);
    }
    return std::nullopt;
}

} // namespace

Page pageOf(TileKind kind) {
    switch (kind) {
    case TileKind::cpu:
        return Page::cpu;
    case TileKind::memory:
        return Page::memory;
    case TileKind::gpu:
        return Page::gpu;
    case TileKind::temperature:
        return Page::thermal;
    case TileKind::network:
        return Page::network;
    case TileKind::disk:
        return Page::disk;
    case TileKind::battery:
    case TileKind::power:
        return Page::battery;
    }
    return Page::overview;
}

std::optional<OverviewTile> presentTile(TileKind kind, const AppState& state, TemperatureSource source) {
    auto tile = measuredTile(kind, state, source);
    if (tile && !state.hasFirstSample) // rates need two readings
        tile = OverviewTile{.text = {.caption = tile->text.caption, .value = pendingFigure()}};
    return tile;
}

int tileColumns(int tiles, int room) {
    const int most = std::clamp(room, 1, 4);
    const int rows = std::max((tiles + most - 1) / most, 1);
    return std::max((tiles + rows - 1) / rows, 1);
}

} // namespace ostrivane
