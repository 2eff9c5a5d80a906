#include "app/model/LiveSeries.hpp"

#include "core/model/SystemSnapshot.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace ostrivane {
namespace {

SystemSnapshot at(double seconds) {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{seconds});
    snapshot.interval = 2;
    return snapshot;
}

TEST(LiveSeries, takesEachFigureFromItsPlace) {
    SystemSnapshot snapshot = at(1000);
    snapshot.cpu.usage = 0.5;
    snapshot.cpu.user = 0.4;
    snapshot.cpu.system = 0.1;
    snapshot.memory.used = 7;
    snapshot.memory.availablePercent = 30;
    snapshot.memory.swapUsed = 8;
    snapshot.gpu.utilization = 0.25;
    snapshot.disk.readBytesPerSec = 1;
    snapshot.disk.writeBytesPerSec = 2;
    snapshot.network.inRate = 3;
    snapshot.network.outRate = 4;
    snapshot.thermal.cpuTemperature = 60;
    snapshot.thermal.gpuTemperature = 50;
    snapshot.thermal.systemPowerW = 20;
    snapshot.thermal.fans = {{.rpm = 1000}, {.rpm = 2000}};
    snapshot.battery.isPresent = true;
    snapshot.battery.percent = 80;
    LiveSeries live;
    live.add(snapshot);
    const std::array expected{0.5, 0.4, 0.1, 7.0, 70.0, 8.0, 0.25, 1.0, 2.0, 3.0, 4.0, 60.0, 50.0, 20.0, 1500.0, 80.0};
    for (std::size_t key = 0; key < liveKeyCount; ++key) {
        const auto points = live[static_cast<LiveKey>(key)];
        ASSERT_EQ(points.size(), 1u) << key;
        EXPECT_EQ(points[0].value, expected.at(key)) << key;
        EXPECT_EQ(points[0].time, 1000) << key;
    }
    snapshot.battery.systemPowerW = 15; // the battery knows better
    snapshot.memory.availablePercent = 120;
    live.add(snapshot);
    EXPECT_EQ(live[LiveKey::power].back().value, 15);
    EXPECT_EQ(live[LiveKey::memPressure].back().value, 0);
    snapshot.memory.availablePercent = -5;
    live.add(snapshot);
    EXPECT_EQ(live[LiveKey::memPressure].back().value, 100);
}

TEST(LiveSeries, leavesOutWhatIsAbsentOrNoNumber) {
    LiveSeries live;
    SystemSnapshot snapshot = at(1000);
    snapshot.thermal.cpuTemperature = std::numeric_limits<double>::quiet_NaN();
    snapshot.network.inRate = std::numeric_limits<double>::infinity();
    snapshot.thermal.fans = {{.rpm = std::numeric_limits<double>::quiet_NaN()}};
    snapshot.battery.percent = 50; // of a battery that is not there
    live.add(snapshot);
    for (const LiveKey key : {LiveKey::cpuTemp, LiveKey::gpuTemp, LiveKey::netIn, LiveKey::fan, LiveKey::battery,
                              LiveKey::gpu, LiveKey::power})
        EXPECT_TRUE(live[key].empty()) << static_cast<int>(key);
    EXPECT_EQ(live[LiveKey::netOut].size(), 1u);
}

TEST(LiveSeries, holdsFiveMinutesWhateverTheClockDoes) {
    LiveSeries live;
    for (double second = 0; second <= 300; second += 2)
        live.add(at(1000 + second));
    EXPECT_EQ(live[LiveKey::cpu].size(), 151u) << "300 seconds old is not too old";
    live.add(at(1302));
    EXPECT_EQ(live[LiveKey::cpu].front().time, 1002);
    live.add(at(2000)); // a suspend
    EXPECT_EQ(live[LiveKey::cpu].size(), 1u);
    live.add(at(1900)); // set back
    live.add(at(1902));
    EXPECT_EQ(live[LiveKey::cpu].size(), 2u) << "a point from the future would never grow old";
}

TEST(LiveSeries, averagesFromTheNewestPointBack) {
    LiveSeries live;
    EXPECT_EQ(live.average(LiveKey::cpu, 300), std::nullopt);
    SystemSnapshot snapshot = at(1000);
    for (const double load : {0.9, 0.2, 0.4}) {
        snapshot.cpu.usage = load;
        live.add(snapshot);
        snapshot.timestamp.seconds += 10;
    }
    EXPECT_NEAR(live.average(LiveKey::cpu, 300).value(), 0.5, 1e-12);
    EXPECT_NEAR(live.average(LiveKey::cpu, 10).value(), 0.3, 1e-12) << "a point at the edge counts";
    EXPECT_NEAR(live.average(LiveKey::cpu, 0).value(), 0.4, 1e-12);
}

TEST(LiveSeries, keepsAMinuteOfEachCore) {
    LiveSeries live;
    SystemSnapshot snapshot = at(1000);
    snapshot.cpu.cores.resize(2);
    for (int tick = 0; tick < 70; ++tick) {
        snapshot.cpu.cores[1].usage = tick;
        live.add(snapshot);
    }
    ASSERT_EQ(live.cores().size(), 2u);
    ASSERT_EQ(live.cores()[1].size(), 60u);
    EXPECT_EQ(live.cores()[1].front(), 10);
    EXPECT_EQ(live.cores()[1].back(), 69);
    snapshot.cpu.cores.resize(3);
    live.add(snapshot);
    ASSERT_EQ(live.cores().size(), 3u);
    EXPECT_EQ(live.cores()[0].size(), 1u) << "other cores: all begin anew";
}

} // namespace
} // namespace ostrivane
