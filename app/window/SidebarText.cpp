#include "app/window/SidebarText.hpp"

#include "app/model/AppState.hpp"
#include "app/widgets/StatusGlyph.hpp"
#include "app/widgets/Strings.hpp"
#include "core/model/Formatters.hpp"

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

SidebarValue plain(const std::string& words) {
    return {.text = text(words)};
}

SidebarValue fraction(std::optional<double> share) {
    return share ? plain(Formatters::percent(share)) : SidebarValue{};
}

SidebarValue count(std::size_t number) {
    return number == 0 ? SidebarValue{} : plain(Formatters::whole(static_cast<double>(number)));
}

/// The larger of two directions; nothing while nothing moves, or nobody measures it.
SidebarValue traffic(double one, double other, bool isDisk) {
    const double most = std::max(one, other);
    if (!(most > 0))
        return {};
    return plain(isDisk ? Formatters::diskRate(most) : Formatters::rate(most));
}

SidebarValue worst(const std::vector<HealthCategory>& health) {
    std::optional<HealthCategory::Status> found;
    for (const HealthCategory& category : health)
        if (category.status == HealthCategory::Status::elevated || category.status == HealthCategory::Status::high)
            found = std::max(found.value_or(category.status), category.status);
    if (!found)
        return {};
    return {.condition = conditionOf(*found), .words = QStringLiteral("Needs attention")};
}

SidebarValue alertsToday(const std::vector<Alert>& alerts, Date midnight) {
    const auto number = std::ranges::count_if(alerts, [&](const Alert& alert) {
        return alert.severity != AlertSeverity::info && alert.date.seconds >= midnight.seconds;
    });
    if (number == 0)
        return {};
    const QString written = text(Formatters::whole(static_cast<double>(number)));
    return {
        .text = written, .tone = Tone::elevated, .isStrong = true, .words = QStringLiteral("%1 today").arg(written)};
}

SidebarValue recording(const AppState& state, Date now) {
    if (!state.session)
        return {};
    const QString length = text(Formatters::duration(std::max(0.0, now - state.session->start())));
    return {
        .text = length, .tone = Tone::high, .isRecording = true, .words = QStringLiteral("Recording, %1").arg(length)};
}

SidebarValue freeSpace(const SystemSnapshot& snapshot) {
    const std::optional<VolumeInfo> root = snapshot.disk.root();
    if (!root || root->total == 0)
        return {};
    const double share = static_cast<double>(root->available) / static_cast<double>(root->total);
    return plain(Formatters::percent(std::floor(share * 100) / 100) + " free");
}

} // namespace

SidebarValue sidebarValue(Page page, const AppState& state, Date now, Date midnight) {
    const SystemSnapshot& snapshot = *state.snapshot;
    switch (page) {
    case Page::health:
        return worst(state.health);
    case Page::cpu:
        return state.hasFirstSample ? fraction(snapshot.cpu.usage) : SidebarValue{};
    case Page::memory:
        return snapshot.memory.total > 0 ? fraction(snapshot.memory.usedFraction()) : SidebarValue{};
    case Page::gpu:
        return fraction(snapshot.gpu.utilization);
    case Page::disk:
        return traffic(snapshot.disk.readBytesPerSec, snapshot.disk.writeBytesPerSec, true);
    case Page::network:
        return traffic(snapshot.network.inRate, snapshot.network.outRate, false);
    case Page::battery:
        return snapshot.battery.isPresent ? fraction(static_cast<double>(snapshot.battery.percent) / 100)
                                          : SidebarValue{};
    case Page::thermal:
        return snapshot.thermal.cpuTemperature ? plain(Formatters::temperature(snapshot.thermal.cpuTemperature))
                                               : SidebarValue{};
    case Page::applications:
        return count(snapshot.applications.size());
    case Page::processes:
        return count(static_cast<std::size_t>(std::max<std::int64_t>(0, snapshot.processCount)));
    case Page::projects:
        return count(snapshot.projects.size());
    case Page::ports:
        return count(snapshot.ports.size());
    case Page::ai:
        return count(snapshot.aiWorkloads.size());
    case Page::alerts:
        return alertsToday(state.alerts, midnight);
    case Page::sessions:
        return recording(state, now);
    case Page::storage:
        return freeSpace(snapshot);
    case Page::overview:
    case Page::history:
    case Page::organizer:
    case Page::audio:
    case Page::devices:
    case Page::settings:
        return {};
    }
    return {};
}

} // namespace ostrivane
