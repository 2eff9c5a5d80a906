#include "tests/judgement/AlertSnapshots.hpp"

#include <gtest/gtest.h>

namespace ostrivane {

namespace {

constexpr auto discharging = BatterySnapshot::State::discharging;
constexpr auto charging = BatterySnapshot::State::charging;

std::string storageAlert(std::uint64_t available, std::uint64_t total) {
    AlertFeed feed(AlertKind::lowStorage);
    feed.snapshot.disk.volumes = {{.name = "Elsewhere", .mountPoint = "/mnt", .total = 1000, .available = 0},
                                  {.name = "Main", .mountPoint = "/", .total = total, .available = available}};
    feed.snapshot.disk.volumes[1].isRoot = true;
    return told(feed.tick());
}

std::string serverAlert(double uptime, std::optional<double> idleFor, bool isIdle = true) {
    AlertFeed feed(AlertKind::idleServer);
    feed.snapshot.devServers = {{.pid = 4711,
                                 .kind = "Vite",
                                 .ports = {5173, 24678},
                                 .memory = GiB,
                                 .uptime = uptime,
                                 .idleFor = idleFor,
                                 .isIdle = isIdle,
                                 .activity = "no connections"}};
    return told(feed.tick());
}

} // namespace

TEST(MachineRules, tellOfABatteryThatDrainsFast) {
    const auto lastTick = [](std::int64_t percent, BatterySnapshot::State state) { // 12 minutes after 80%
        AlertFeed feed(AlertKind::batteryDrain, 30);
        BatterySnapshot& battery = feed.snapshot.battery;
        battery = {.isPresent = true, .percent = 80, .state = discharging};
        feed.app("unknown");
        feed.app("a").powerW = 2.5;
        feed.app("b").powerW = 12;
        feed.tick();
        battery.percent = 70;
        EXPECT_EQ(told(feed.pass(690)), ""); // as fast as it seems, too little of the window is known
        battery.percent = percent;
        battery.state = state;
        return told(feed.tick());
    };
    EXPECT_EQ(lastTick(76, discharging), "");
    EXPECT_EQ(lastTick(70, charging), "");
    EXPECT_EQ(lastTick(75, discharging),
              "warning battery: Battery is draining at 25% per hour | Down 5% in 12 min. Name "
              "of b is drawing the most power (12.0 W).\n");
}

TEST(MachineRules, passOverTheTimeOnMainsPower) {
    AlertFeed feed(AlertKind::batteryDrain, 2); // each change falls into the middle of a point
    BatterySnapshot& battery = feed.snapshot.battery;
    battery = {.isPresent = true, .percent = 80, .state = discharging};
    std::string found = told(feed.pass(700));
    battery.state = charging;
    found += told(feed.pass(100));
    battery.state = discharging;
    found += told(feed.pass(90));
    EXPECT_EQ(found, "");
    battery.percent = 70;
    EXPECT_EQ(told(feed.pass(60)), "warning battery: Battery is draining at 40% per hour | Down 10% in 14 min.\n");
}

TEST(MachineRules, tellOfLastingHeat) {
    AlertFeed feed(AlertKind::highTemperature);
    auto& thermal = feed.snapshot.thermal;
    thermal.cpuTemperature = 94;
    EXPECT_EQ(told(feed.pass(600)), "");
    thermal.cpuTemperature.reset();
    EXPECT_EQ(told(feed.pass(600)), "");
    thermal.cpuTemperature = 95;
    EXPECT_EQ(told(feed.pass(170)), "");
    EXPECT_EQ(told(feed.tick()), "warning cpu: CPU temperature has stayed high | 95 °C on average for 3 min. Fans: no "
                                 "fans.\n");
    thermal.fans = {{.id = 0, .rpm = 2199.9}, {.id = 1, .rpm = 2300}};
    EXPECT_EQ(told(feed.pass(3600)), "warning cpu: CPU temperature has stayed high | 95 °C on average for 3 min. Fans: "
                                     "2199 rpm, 2300 rpm.\n");
}

TEST(MachineRules, tellOfThermalPressureThatNeverLetUp) {
    AlertFeed feed(AlertKind::thermalPressure, 5);
    auto& state = feed.snapshot.thermal.state;
    state = ThermalLevel::serious;
    EXPECT_EQ(told(feed.pass(40)), "");
    state = ThermalLevel::fair;
    EXPECT_EQ(told(feed.tick()), "");
    state = ThermalLevel::critical;
    EXPECT_EQ(told(feed.pass(60)), ""); // the cooler moment is still part of the window
    EXPECT_EQ(
        told(feed.tick()),
        "critical thermal: macOS reports critical thermal pressure | The system has been at critical or worse for 1 "
        "min; macOS may be reducing performance to cool down.\n");
}

TEST(MachineRules, tellOfAStartVolumeThatRunsFull) {
    EXPECT_EQ(storageAlert(10'000'000'000, 100'000'000'000), "");
    EXPECT_EQ(storageAlert(9'999'999'999, 100'000'000'000),
              "warning /: Main is running out of space | 10 GB free of 100 GB (9%).\n");
    EXPECT_EQ(storageAlert(5'000'000'000, 100'000'000'000),
              "warning /: Main is running out of space | 5 GB free of 100 GB (5%).\n");
    EXPECT_EQ(storageAlert(4'000'000'000, 100'000'000'000),
              "critical /: Main is running out of space | 4 GB free of 100 GB (4%).\n");
    EXPECT_EQ(storageAlert(0, 0), "");
}

TEST(MachineRules, tellOfServersThatStandIdle) {
    constexpr double day = 86400;
    EXPECT_EQ(serverAlert(day, std::nullopt),
              "info 4711: Vite on port 5173, 24678 looks idle | Running for 1 days, no connections, using 1.00 GB.\n");
    EXPECT_NE(serverAlert(3600, day), "");
    EXPECT_EQ(serverAlert(day - 1, day - 1), "");
    EXPECT_EQ(serverAlert(2 * day, 2 * day, false), "");
}

} // namespace ostrivane
