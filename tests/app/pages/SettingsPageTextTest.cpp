#include "app/pages/SettingsPageText.hpp"

#include "app/model/AppState.hpp"
#include "core/model/Formatters.hpp"
#include "tests/TimeZone.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

AppState measured(SystemSnapshot snapshot) {
    AppState state;
    state.snapshot = std::make_shared<SystemSnapshot>(std::move(snapshot));
    state.hasFirstSample = true;
    return state;
}

TEST(MenuMetricValue, isWhatTheMachineSaysNow) {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{0});
    snapshot.cpu.usage = 0.31;
    snapshot.memory.total = 100;
    snapshot.memory.used = 73;
    snapshot.network.inRate = 3.4e6;
    snapshot.network.outRate = 412e3;
    snapshot.thermal.cpuTemperature = 68;
    snapshot.thermal.hottest = 91;
    snapshot.thermal.systemPowerW = 18.4;
    const AppState state = measured(snapshot);
    const auto value = [&](MenuMetric metric, TemperatureSource source = TemperatureSource::cpu) {
        return valueText(metric, source, state);
    };
    EXPECT_EQ(value(MenuMetric::cpu), "31%");
    EXPECT_EQ(value(MenuMetric::memory), "73%");
    EXPECT_EQ(value(MenuMetric::network), "3.4 MB/s, 412 KB/s");
    EXPECT_EQ(value(MenuMetric::temperature), "68 °C");
    EXPECT_EQ(value(MenuMetric::temperature, TemperatureSource::hottest), "91 °C");
    EXPECT_EQ(value(MenuMetric::power), "18.4 W");
    EXPECT_EQ(value(MenuMetric::battery), "AC");
    // What is not known is not nought.
    EXPECT_EQ(value(MenuMetric::gpu), Formatters::percent(std::nullopt));
    EXPECT_EQ(value(MenuMetric::temperature, TemperatureSource::gpu), Formatters::temperature(std::nullopt));
}

TEST(MenuMetricValue, waitsForTheFirstSampleAndPrefersTheBattery) {
    AppState waiting = measured(SystemSnapshot::empty(Date{0}));
    waiting.hasFirstSample = false;
    EXPECT_EQ(valueText(MenuMetric::cpu, TemperatureSource::cpu, waiting), "…");
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{0});
    snapshot.battery.isPresent = true;
    snapshot.battery.percent = 64;
    snapshot.battery.systemPowerW = 9.5;
    snapshot.thermal.systemPowerW = 18.4;
    EXPECT_EQ(valueText(MenuMetric::battery, TemperatureSource::cpu, measured(snapshot)), "64%");
    EXPECT_EQ(valueText(MenuMetric::power, TemperatureSource::cpu, measured(snapshot)), "9.50 W");
}

TEST(SettingsPageText, tellsWhatIsNotKnown) {
    const TimeZone zone("UTC");
    EXPECT_EQ(historySizeText(0), "—");
    EXPECT_EQ(historySizeText(1'230'000'000), "1.23 GB");
    const Date now{1'700'000'000};
    EXPECT_EQ(earliestText(std::nullopt, now), "—");
    EXPECT_EQ(earliestText(now, now), "14 November");
    EXPECT_EQ(earliestText(now + -365 * 86'400.0, now), "14 November 2022");
    EXPECT_EQ(paceText(5, 0.5), "The figures move as often as the machine is sampled: every 5 s in the background, "
                                "every 0.5 s while something is open.");
}

TEST(SettingsPageText, saysWhatClosingAndLoginReallyDo) {
    EXPECT_EQ(closingText(WayBack::icon, false), closingText(WayBack::icon, true));
    EXPECT_EQ(closingText(WayBack::furtherStart, false), "Ostrivane quits");
    EXPECT_NE(closingText(WayBack::furtherStart, true), closingText(WayBack::furtherStart, std::nullopt));
    EXPECT_EQ(closingText(WayBack::none, true), closingText(WayBack::none, false));
    EXPECT_EQ(startAtLoginText(LoginItem::State::needsApproval, WayBack::icon),
              "Approve Ostrivane in System Settings → General → Login Items.");
    EXPECT_EQ(startAtLoginText(LoginItem::State::on, WayBack::none),
              "With its window; nothing here could bring it up later");
}

} // namespace
} // namespace ostrivane
