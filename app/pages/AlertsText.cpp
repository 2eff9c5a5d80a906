#include "app/pages/AlertsText.hpp"

#include "app/model/AlertList.hpp"
#include "app/model/DateWords.hpp"
#include "core/model/Calendar.hpp"

#include <fmt/format.h>

#include <algorithm>

namespace ostrivane {

namespace {

bool passes(const Alert& alert, AlertFilter filter) {
    switch (filter) {
    case AlertFilter::all:
        return true;
    case AlertFilter::warnings:
        return alert.severity == AlertSeverity::warning;
    case AlertFilter::critical:
        return alert.severity == AlertSeverity::critical;
    }
    return true;
}

std::string_view word(AlertSeverity severity) {
    switch (severity) {
    case AlertSeverity::info:
        return "Information";
    case AlertSeverity::warning:
        return "Warning";
    case AlertSeverity::critical:
        return "Critical";
    }
    return {};
}

Page pageOf(AlertKind kind) {
    switch (kind) {
    case AlertKind::sustainedCPU:
    case AlertKind::unusualCPU:
    case AlertKind::excessiveMemory:
    case AlertKind::memoryGrowth:
    case AlertKind::diskWrite:
    case AlertKind::networkHeavy:
        return Page::applications;
    case AlertKind::memoryPressure:
    case AlertKind::swapGrowth:
        return Page::memory;
    case AlertKind::batteryDrain:
        return Page::battery;
    case AlertKind::highTemperature:
    case AlertKind::thermalPressure:
        return Page::thermal;
    case AlertKind::idleServer:
        return Page::projects;
    case AlertKind::lowStorage:
        return Page::storage;
    }
    return Page::overview;
}

} // namespace

std::vector<AlertLine> alertLines(const std::vector<Alert>& alerts, AlertFilter filter, Date now) {
    std::vector<AlertLine> lines;
    Date start;  // of the day of the alert before
    Date latest; // the alert before
    for (const Alert& alert : alerts) {
        if (!passes(alert, filter))
            continue;
        const bool isSameDay = !lines.empty() && alert.date >= start && alert.date <= latest; // the calendar is slow
        latest = alert.date;
        if (!isSameDay)
            start = Calendar::startOfDay(alert.date);
        const auto dayStart = static_cast<std::int64_t>(start.seconds);
        if (lines.empty() || lines.back().dayStart != dayStart)
            lines.push_back({.id = std::nullopt, .dayStart = dayStart, .title = DateWords::nearDay(alert.date, now)});
        lines.push_back({.id = alert.id,
                         .dayStart = dayStart,
                         .severity = alert.severity,
                         .title = alert.title,
                         .body = alert.body,
                         .time = DateWords::clock(alert.date),
                         .notified = alert.notify});
    }
    return lines;
}

std::string spoken(const AlertLine& line) {
    if (!line.id)
        return line.title;
    return fmt::format("{}: {}. {} At {}{}.", word(line.severity), line.title, line.body, line.time,
                       line.notified ? ", with a notification" : "");
}

std::string copied(const Alert& alert) {
    return alert.body.empty() ? alert.title : alert.title + "\n" + alert.body;
}

std::string alertsSubtitle(const std::vector<Alert>& alerts, Date now) {
    const Date today = Calendar::startOfDay(now);
    const auto count = [&](AlertSeverity severity) {
        return std::ranges::count_if(
            alerts, [&](const Alert& alert) { return alert.severity == severity && alert.date >= today; });
    };
    const auto critical = count(AlertSeverity::critical);
    const auto warnings = count(AlertSeverity::warning);
    const std::string ofWarnings = warnings == 1 ? "1 warning today" : fmt::format("{} warnings today", warnings);
    if (critical == 0)
        return warnings == 0 ? "No warnings today" : ofWarnings;
    return warnings == 0 ? fmt::format("{} critical today", critical)
                         : fmt::format("{} critical, {}", critical, ofWarnings);
}

std::string alertsFooter(std::int64_t retentionDays) {
    const std::int64_t days = std::max<std::int64_t>(retentionDays, 1);
    return fmt::format("Alerts older than {} {} are removed. The newest {} are kept in view.", days,
                       days == 1 ? "day" : "days", AlertList::most);
}

AlertTarget target(const Alert& alert) {
    const Page page = pageOf(alert.kind);
    return {.page = page, .appKey = page == Page::applications ? alert.subject : std::nullopt};
}

std::string showText(const AlertTarget& target, const AppState& state, const PlatformWords& words) {
    return "Show " + (target.appKey ? state.appName(*target.appKey) : title(target.page, words));
}

} // namespace ostrivane
