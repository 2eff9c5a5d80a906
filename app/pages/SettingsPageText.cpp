#include "app/pages/SettingsPageText.hpp"

#include "app/model/AppState.hpp"
#include "app/model/ChosenTemperature.hpp"
#include "app/model/DateWords.hpp"
#include "app/pages/Decimals.hpp"
#include "core/model/Formatters.hpp"

#include <fmt/format.h>

namespace ostrivane {

namespace {

std::string seconds(double count) {
    return Formatters::decimal(count, shownDecimals(count)) + " s";
}

} // namespace

std::string closingText(WayBack wayBack, std::optional<bool> keepsRunning) {
    switch (wayBack) {
    case WayBack::icon:
        return "Ostrivane goes on measuring, behind its icon in the tray";
    case WayBack::none:
        return "Ostrivane quits; nothing here could bring its window back";
    case WayBack::system:
        return "Ostrivane goes on measuring; opening it again shows the window";
    case WayBack::furtherStart:
        break;
    }
    if (!keepsRunning)
        return "There is no icon to come back by; the first time Ostrivane asks";
    return *keepsRunning ? "Ostrivane goes on measuring; starting it again shows the window" : "Ostrivane quits";
}

std::string startAtLoginText(LoginItem::State state, WayBack wayBack) {
    switch (state) {
    case LoginItem::State::needsApproval:
        return "Approve Ostrivane in System Settings → General → Login Items.";
    case LoginItem::State::unknown:
        return "The system does not tell whether it does";
    case LoginItem::State::off:
    case LoginItem::State::on:
        break;
    }
    switch (wayBack) {
    case WayBack::icon:
        return "Behind its icon only, with no window";
    case WayBack::system:
    case WayBack::furtherStart:
        return "With no window; opening Ostrivane shows it";
    case WayBack::none:
        return "With its window; nothing here could bring it up later";
    }
    return {};
}

std::string_view name(MenuMetric metric) {
    switch (metric) {
    case MenuMetric::cpu:
        return "CPU";
    case MenuMetric::memory:
        return "Memory";
    case MenuMetric::gpu:
        return "GPU";
    case MenuMetric::network:
        return "Network";
    case MenuMetric::disk:
        return "Disk";
    case MenuMetric::temperature:
        return "Temperature";
    case MenuMetric::battery:
        return "Battery";
    case MenuMetric::power:
        return "Power";
    }
    return {};
}

std::string_view iconName(MenuMetric metric) {
    switch (metric) {
    case MenuMetric::cpu:
        return "page.cpu";
    case MenuMetric::memory:
        return "page.memory";
    case MenuMetric::gpu:
        return "page.gpu";
    case MenuMetric::network:
        return "page.network";
    case MenuMetric::disk:
        return "page.disk";
    case MenuMetric::temperature:
        return "page.thermal";
    case MenuMetric::battery:
        return "page.battery";
    case MenuMetric::power:
        return "bolt";
    }
    return {};
}

std::string valueText(MenuMetric metric, TemperatureSource source, const AppState& state) {
    if (!state.hasFirstSample)
        return "…";
    const SystemSnapshot& now = *state.snapshot;
    switch (metric) {
    case MenuMetric::cpu:
        return Formatters::percent(now.cpu.usage);
    case MenuMetric::memory:
        return Formatters::percent(now.memory.usedFraction());
    case MenuMetric::gpu:
        return Formatters::percent(now.gpu.utilization);
    case MenuMetric::network:
        return fmt::format("{}, {}", Formatters::rate(now.network.inRate), Formatters::rate(now.network.outRate));
    case MenuMetric::disk:
        return fmt::format("{}, {}", Formatters::diskRate(now.disk.readBytesPerSec),
                           Formatters::diskRate(now.disk.writeBytesPerSec));
    case MenuMetric::temperature:
        return Formatters::temperature(chosenTemperature(now.thermal, source));
    case MenuMetric::battery:
        return now.battery.isPresent ? fmt::format("{}%", now.battery.percent) : "AC";
    case MenuMetric::power:
        return Formatters::power(now.systemPowerW());
    }
    return {};
}

std::string paceText(double backgroundInterval, double foregroundInterval) {
    return fmt::format("The figures move as often as the machine is sampled: every {} in the background, every {} "
                       "while something is open.",
                       seconds(backgroundInterval), seconds(foregroundInterval));
}

std::string historySizeText(std::uint64_t bytes) {
    return bytes == 0 ? std::string(Formatters::dash) : Formatters::storage(bytes);
}

std::string earliestText(std::optional<Date> earliest, Date now) {
    return earliest ? DateWords::day(*earliest, now) : std::string(Formatters::dash);
}

} // namespace ostrivane
