#include "app/pages/AlertsText.hpp"

#include "tests/TimeZone.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

constexpr double hour = 3600;
constexpr double newYork = 1'762'664'400; // 2025-11-09 00:00 there, in winter time

Alert alert(double seconds, AlertSeverity severity = AlertSeverity::warning, std::uint8_t id = 1) {
    Alert made;
    made.id.data[0] = id;
    made.date = Date{seconds};
    made.severity = severity;
    made.title = "node is keeping the CPU busy";
    made.body = "212% on average for 10 min.";
    made.subject = "exe:node";
    return made;
}

TEST(AlertLines, standBelowTheirDays) {
    const TimeZone zone("America/New_York");
    const Date now{newYork + 10 * hour};
    const std::vector<Alert> alerts{alert(newYork + hour, AlertSeverity::warning, 4),
                                    alert(newYork, AlertSeverity::info, 3),
                                    alert(newYork - 1, AlertSeverity::critical, 2), alert(newYork - 30 * hour)};
    const auto lines = alertLines(alerts, AlertFilter::all, now);
    std::vector<std::string> days;
    std::vector<int> places;
    for (std::size_t index = 0; index < lines.size(); ++index)
        if (!lines[index].id) {
            days.push_back(lines[index].title);
            places.push_back(static_cast<int>(index));
        }
    EXPECT_EQ(days, (std::vector<std::string>{"Today", "Yesterday", "7 November"}));
    EXPECT_EQ(places, (std::vector<int>{0, 3, 5}));
    EXPECT_EQ(lines[2].time, "00:00");
    EXPECT_EQ(lines[4].time, "23:59");
    EXPECT_EQ(spoken(lines[4]), "Critical: node is keeping the CPU busy. 212% on average for 10 min. At 23:59.");

    // The same instants in another zone fall on other days.
    const TimeZone london("Europe/London");
    EXPECT_EQ(alertLines(alerts, AlertFilter::all, now).size(), 6U);
}

TEST(AlertLines, leaveOutWhatDoesNotPassAndDaysWithoutAlerts) {
    const Date now{newYork + 10 * hour};
    const std::vector<Alert> alerts{alert(newYork), alert(newYork - 48 * hour, AlertSeverity::critical)};
    EXPECT_EQ(alertLines(alerts, AlertFilter::critical, now).size(), 2U);
    EXPECT_EQ(alertLines(alerts, AlertFilter::critical, now)[1].severity, AlertSeverity::critical);
    EXPECT_EQ(alertLines(alerts, AlertFilter::warnings, now)[1].severity, AlertSeverity::warning);
    EXPECT_TRUE(alertLines({alert(newYork, AlertSeverity::info)}, AlertFilter::warnings, now).empty());
}

TEST(AlertsSubtitle, countsWhatMattersSinceMidnight) {
    const TimeZone zone("America/New_York");
    const Date now{newYork + 10 * hour};
    EXPECT_EQ(alertsSubtitle({alert(newYork - 1), alert(newYork, AlertSeverity::info)}, now), "No warnings today");
    EXPECT_EQ(alertsSubtitle({alert(newYork)}, now), "1 warning today");
    EXPECT_EQ(alertsSubtitle({alert(newYork), alert(newYork + 1)}, now), "2 warnings today");
    EXPECT_EQ(alertsSubtitle({alert(newYork, AlertSeverity::critical), alert(newYork)}, now),
              "1 critical, 1 warning today");
    EXPECT_EQ(alertsSubtitle({alert(newYork, AlertSeverity::critical)}, now), "1 critical today");
}

TEST(AlertsFooter, tellsWhatIsKept) {
    EXPECT_EQ(alertsFooter(30), "Alerts older than 30 days are removed. The newest 300 are kept in view.");
    EXPECT_EQ(alertsFooter(-5), "Alerts older than 1 day are removed. The newest 300 are kept in view.");
}

TEST(AlertTarget, isTheApplicationOrThePageOfTheSubject) {
    AppState state;
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{0});
    snapshot.applications.push_back({.key = "exe:node", .name = "Node"});
    state.snapshot = std::make_shared<SystemSnapshot>(snapshot);
    const auto shown = [&](AlertKind kind, std::optional<std::string> subject) {
        Alert made = alert(0);
        made.kind = kind;
        made.subject = std::move(subject);
        return showText(target(made), state, PlatformWords::Linux);
    };
    EXPECT_EQ(shown(AlertKind::sustainedCPU, "exe:node"), "Show Node");
    EXPECT_EQ(shown(AlertKind::diskWrite, "exe:/usr/bin/gone"), "Show gone");
    EXPECT_EQ(shown(AlertKind::diskWrite, std::nullopt), "Show Applications");
    EXPECT_EQ(shown(AlertKind::swapGrowth, "system"), "Show Memory");
    EXPECT_EQ(shown(AlertKind::lowStorage, "/"), "Show Storage");
    EXPECT_EQ(target(alert(0)), (AlertTarget{Page::applications, "exe:node"}));
    Alert hot = alert(0);
    hot.kind = AlertKind::highTemperature;
    hot.subject = "cpu";
    EXPECT_EQ(target(hot), (AlertTarget{Page::thermal, std::nullopt}));
}

} // namespace
} // namespace ostrivane
