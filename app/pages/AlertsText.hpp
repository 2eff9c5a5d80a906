#pragma once

#include "app/model/AppState.hpp"
#include "core/judgement/Alert.hpp"
#include "core/model/Page.hpp"
#include "core/model/PlatformWords.hpp"

#include <boost/uuid/uuid.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

enum class AlertFilter { all, warnings, critical };

/// A line of the list: the name of a day, or an alert of the day above it.
struct AlertLine {
    std::optional<boost::uuids::uuid> id; ///< of the alert; absent for a day
    std::int64_t dayStart = 0;            ///< seconds since 1970; with `id` what identifies the line
    AlertSeverity severity = AlertSeverity::info;
    std::string title; ///< or the day's name
    std::string body;
    std::string time; ///< "14:21"
    bool notified = false;

    friend bool operator==(const AlertLine&, const AlertLine&) = default;
};

/// The alerts that pass, the newest first, below the days on which they fired.
std::vector<AlertLine> alertLines(const std::vector<Alert>& alerts, AlertFilter filter, Date now);

/// What an alert tells assistive programs: "Warning: … at 14:21".
std::string spoken(const AlertLine& line);
/// What is put on the clipboard of it: its title, and its text below.
std::string copied(const Alert& alert);

/// "2 warnings today".
std::string alertsSubtitle(const std::vector<Alert>& alerts, Date now);

/// "Alerts older than 30 days are removed. The newest 300 are kept in view."
std::string alertsFooter(std::int64_t retentionDays);

/// Where an alert leads: the application that it is about, or the page that shows what it is about.
struct AlertTarget {
    Page page = Page::overview;
    std::optional<std::string> appKey{};

    friend bool operator==(const AlertTarget&, const AlertTarget&) = default;
};
AlertTarget target(const Alert& alert);

/// "Show Xcode", "Show Memory".
std::string showText(const AlertTarget& target, const AppState& state, const PlatformWords& words);

} // namespace ostrivane
