#include "app/pages/OverviewTiles.hpp"

#include "app/model/AppState.hpp"
#include "tests/app/pages/PageHarness.hpp"

#include <gtest/gtest.h>

#include <utility>

namespace ostrivane {

namespace {

AppState stateOf(SystemSnapshot snapshot) {
    snapshot.interval = 2;
    AppState state;
    state.hasFirstSample = true;
    state.tick = 2;
    state.live.add(snapshot);
    state.snapshot = std::make_shared<SystemSnapshot>(std::move(snapshot));
    return state;
}

/// A machine of which only processor and memory can be read.
SystemSnapshot bareMachine() {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{1'700'000'000});
    snapshot.cpu.usage = 0.31;
    snapshot.cpu.user = 0.22;
    snapshot.cpu.system = 0.09;
    snapshot.cpu.loadAverage = {4.21, 3, 2};
    snapshot.cpu.cores.resize(4);
    snapshot.memory.total = std::uint64_t(32) << 30;
    snapshot.memory.used = std::uint64_t(24) << 30;
    return snapshot;
}

SystemSnapshot wholeMachine() {
    SystemSnapshot snapshot = bareMachine();
    snapshot.memory.swapUsed = std::uint64_t(2) << 30;
    snapshot.memory.pressure = MemoryPressure::warning;
    snapshot.gpu.utilization = 0.24;
    snapshot.thermal.cpuTemperature = 68;
    snapshot.thermal.hottest = 79;
    snapshot.thermal.fans.resize(2);
    snapshot.thermal.fans[0].rpm = 2310.9;
    snapshot.thermal.fans[1].rpm = 2486;
    snapshot.network.inRate = 3'400'000;
    snapshot.network.outRate = 412'000;
    snapshot.network.interfaces.resize(1);
    snapshot.network.interfaces[0].displayName = "Wi-Fi";
    snapshot.network.interfaces[0].isPrimary = true;
    snapshot.disk.readBytesPerSec = 12'400'000;
    snapshot.disk.writeBytesPerSec = 38'100'000;
    snapshot.disk.totalRead = 1;
    snapshot.disk.volumes.push_back({.total = 1000, .available = 169, .isRoot = true});
    snapshot.battery.isPresent = true;
    snapshot.battery.percent = 64;
    snapshot.battery.state = BatterySnapshot::State::discharging;
    snapshot.battery.minutesRemaining = 192;
    snapshot.battery.systemPowerW = 18.4;
    snapshot.applications.resize(2);
    snapshot.applications[0].powerW = 9.97;
    return snapshot;
}

std::optional<OverviewTile> tile(TileKind kind, const AppState& state) {
    return presentTile(kind, state, TemperatureSource::cpu);
}

/// Value, pairs, detail, corner and badge in one line.
std::string words(const std::optional<OverviewTile>& tile) {
    if (!tile)
        return "none";
    QStringList parts{tile->text.value};
    for (const TileText::Pair& pair : tile->text.pairs)
        parts << pair.text;
    parts << tile->text.detail << tile->text.corner << tile->text.word;
    parts.removeAll(QString());
    return parts.join(QStringLiteral(" | ")).toStdString();
}

std::vector<TileKind> shownKinds(const AppState& state) {
    std::vector<TileKind> kinds;
    for (const TileKind kind : tileKinds)
        if (tile(kind, state))
            kinds.push_back(kind);
    return kinds;
}

} // namespace

TEST(OverviewTiles, sayWhatAWholeMachineDoes) {
    AppState state = stateOf(wholeMachine());
    state.gpuStatsToday = GPUStats{.avg = 0.11, .peak = 0.78};
    EXPECT_EQ(words(tile(TileKind::cpu, state)), "31% | User 22% · System 9% · Load 4.21");
    EXPECT_EQ(words(tile(TileKind::memory, state)), "24.0 GB | of 32.0 GB · Swap 2.00 GB | Elevated");
    EXPECT_EQ(words(tile(TileKind::gpu, state)), "24% | Today 11% average, 78% peak");
    EXPECT_EQ(words(tile(TileKind::temperature, state)), "68 °C | Hottest 79 °C · Fans 2310, 2486 rpm");
    EXPECT_EQ(words(tile(TileKind::network, state)), "In 3.4 MB/s | Out 412 KB/s | Wi-Fi");
    EXPECT_EQ(words(tile(TileKind::disk, state)), "R 12.4 MB/s | W 38.1 MB/s | 16% free");
    EXPECT_EQ(words(tile(TileKind::battery, state)), "64% | On Battery · 3h 12m left");
    EXPECT_EQ(words(tile(TileKind::power, state)), "18.4 W | All apps together 9.97 W");
    // The scales of a line: a share of all, of the memory there is, or of what there was.
    EXPECT_EQ(tile(TileKind::cpu, state)->top, 1);
    EXPECT_EQ(tile(TileKind::memory, state)->top, 34'359'738'368);
    EXPECT_EQ(tile(TileKind::network, state)->top, std::nullopt);
    EXPECT_EQ(tile(TileKind::network, state)->lines.size(), 2U);
}

TEST(OverviewTiles, showNothingThatTheMachineDoesNotTell) {
    const AppState bare = stateOf(bareMachine());
    EXPECT_EQ(shownKinds(bare), (std::vector{TileKind::cpu, TileKind::memory}));
    EXPECT_EQ(words(tile(TileKind::memory, bare)), "24.0 GB | of 32.0 GB");

    const AppState blind = stateOf(SystemSnapshot::empty(Date{1'700'000'000}));
    EXPECT_EQ(words(tile(TileKind::cpu, blind)), "—");
    EXPECT_EQ(words(tile(TileKind::memory, blind)), "—");

    SystemSnapshot uncounted = bareMachine(); // volumes, but no counters of the drives: a rate of 0 would be a guess
    uncounted.disk.volumes.push_back({.total = 1000, .available = 999, .isRoot = true});
    const AppState state = stateOf(uncounted);
    EXPECT_EQ(words(tile(TileKind::disk, state)), "R Unavailable | W Unavailable | 99% free");
    EXPECT_TRUE(tile(TileKind::disk, state)->lines.empty());

    SystemSnapshot damaged = damagedSnapshot();
    for (const TileKind kind : tileKinds)
        for (const TemperatureSource source : {TemperatureSource::gpu, TemperatureSource::hottest})
            if (const auto shown = presentTile(kind, stateOf(damaged), source))
                EXPECT_FALSE(words(shown).find("nan") != std::string::npos || words(shown).find("inf") < 1000)
                    << words(shown);
}

TEST(OverviewTiles, stayWhileAReadingIsMissing) {
    AppState state = stateOf(wholeMachine());
    state.snapshot =
        std::make_shared<SystemSnapshot>(bareMachine()); // the graphics chip sleeps, the sensors are silent
    EXPECT_EQ(words(tile(TileKind::gpu, state)), "—");
    EXPECT_EQ(words(tile(TileKind::temperature, state)), "Unavailable");
    EXPECT_EQ(words(tile(TileKind::power, state)), "Unavailable");
    EXPECT_EQ(words(tile(TileKind::battery, state)), "none"); // it was taken out
}

TEST(OverviewTiles, showFiguresOnlyOnceTheMachineWasReadTwice) {
    AppState state = stateOf(wholeMachine());
    state.hasFirstSample = false;
    for (const TileKind kind : tileKinds) {
        EXPECT_EQ(words(tile(kind, state)), "…");
        EXPECT_TRUE(tile(kind, state)->lines.empty());
    }
}

TEST(OverviewTiles, followTheChosenTemperature) {
    SystemSnapshot snapshot = wholeMachine();
    snapshot.thermal.fans.resize(1);
    const AppState state = stateOf(snapshot);
    EXPECT_EQ(words(presentTile(TileKind::temperature, state, TemperatureSource::hottest)),
              "79 °C | Fan 2310 rpm | Hottest sensor");
    EXPECT_EQ(words(presentTile(TileKind::temperature, state, TemperatureSource::gpu)),
              "Unavailable | Hottest 79 °C · Fan 2310 rpm | GPU");
}

TEST(OverviewTiles, nameWhosePowerItIs) {
    SystemSnapshot snapshot = bareMachine();
    snapshot.applications.resize(1);
    snapshot.applications[0].powerW = 2.5;
    EXPECT_EQ(words(tile(TileKind::power, stateOf(snapshot))), "2.50 W | All apps together");
    snapshot.thermal.systemPowerW = 30;
    EXPECT_EQ(words(tile(TileKind::power, stateOf(snapshot))), "30.0 W | All apps together 2.50 W");
}

TEST(OverviewTiles, sayWhereTheChargeIsGoing) {
    using State = BatterySnapshot::State;
    SystemSnapshot snapshot = wholeMachine();
    for (const auto& [charge, expected] : {std::pair{State::charging, "64% | Charging · 3h 12m to full"},
                                           {State::charged, "64% | Charged"},
                                           {State::acNotCharging, "64% | Not Charging"}}) {
        snapshot.battery.state = charge;
        EXPECT_EQ(words(tile(TileKind::battery, stateOf(snapshot))), expected);
    }
}

TEST(OverviewTiles, fillTheirRows) {
    for (const auto& [count, columns] :
         {std::pair{0, 1}, {1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 3}, {6, 3}, {7, 4}, {8, 4}})
        EXPECT_EQ(tileColumns(count), columns) << count;
}

} // namespace ostrivane
