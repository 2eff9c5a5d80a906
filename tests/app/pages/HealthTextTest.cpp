#include "app/pages/HealthText.hpp"

#include "app/model/AppState.hpp"
#include "app/pages/Freshness.hpp"
#include "core/model/PlatformWords.hpp"

#include <gtest/gtest.h>

#include <utility>

namespace ostrivane {

namespace {

using Status = HealthCategory::Status;

HealthCategory category(const std::string& name, Status status, const std::string& destination) {
    return {.name = name, .status = status, .label = "word", .evidence = {"One.", "Two."}, .destination = destination};
}

AppState judged(std::vector<HealthCategory> health) {
    AppState state;
    state.hasFirstSample = true;
    state.health = std::move(health);
    return state;
}

Alert alert(double seconds) {
    Alert made;
    made.date = Date{seconds};
    made.severity = AlertSeverity::critical;
    made.title = "Title";
    made.body = "Body";
    return made;
}

std::string start(const QString& text) {
    return text.left(text.indexOf(QLatin1Char('.')) + 1).toStdString();
}

} // namespace

TEST(HealthText, countsWhatIsNormal) {
    const auto count = [](std::vector<Status> statuses) {
        std::vector<HealthCategory> health;
        for (const Status status : statuses)
            health.push_back(category("Memory", status, "memory"));
        return start(presentHealth(judged(health), PlatformWords::Linux).count);
    };
    EXPECT_EQ(count({Status::good, Status::elevated, Status::good}), "2 of 3 categories are normal.");
    EXPECT_EQ(count({Status::good, Status::unknown}), "1 of 2 categories is normal.");
    EXPECT_EQ(count({Status::high}), "0 of 1 categories are normal.");
}

TEST(HealthText, givesEachCategoryItsEvidenceAndItsPage) {
    const HealthText text = presentHealth(
        judged({category("Memory", Status::high, "memory"), category("Odd", Status::unknown, "no such page")}),
        PlatformWords::Linux);
    EXPECT_EQ(text.condition, Condition::high);
    EXPECT_EQ(text.summary, QStringLiteral("Memory needs attention"));
    ASSERT_EQ(text.cards.size(), 2U);
    EXPECT_EQ(text.cards[0].evidence, (QStringList{QStringLiteral("One."), QStringLiteral("Two.")}));
    EXPECT_EQ(text.cards[0].link, QStringLiteral("Open Memory"));
    EXPECT_EQ(text.cards[0].page, Page::memory);
    EXPECT_TRUE(text.cards[0].note.isEmpty());
    EXPECT_TRUE(text.cards[1].link.isEmpty());
    HealthCategory bare = category("Storage", Status::unknown, "storage");
    bare.evidence.clear();
    EXPECT_FALSE(presentHealth(judged({bare}), PlatformWords::Linux).cards[0].note.isEmpty()) << "no blank card";
}

TEST(HealthText, saysNothingBeforeTheMachineWasJudged) {
    EXPECT_EQ(presentHealth(judged({}), PlatformWords::Linux), HealthText{});
    AppState state = judged({category("Memory", Status::good, "memory")});
    state.hasFirstSample = false;
    EXPECT_EQ(presentHealth(state, PlatformWords::Linux), HealthText{});
}

TEST(HealthText, listsTheAlertsOfADay) {
    const Date now{1'700'000'000};
    AppState state;
    state.alerts = {alert(now.seconds - 60), alert(now.seconds - 86'399), alert(now.seconds - 86'401)};
    const RecentAlerts recent = presentRecentAlerts(state, now);
    ASSERT_EQ(recent.rows.size(), 2U);
    EXPECT_EQ(recent.rows[0].condition, Condition::high);
    EXPECT_EQ(recent.rows[0].time.size(), 5);
    EXPECT_TRUE(recent.note.isEmpty());

    state.alerts.assign(31, alert(now.seconds));
    EXPECT_EQ(presentRecentAlerts(state, now).rows.size(), 12U);
    EXPECT_EQ(presentRecentAlerts(state, now).note, QStringLiteral("12 of 31"));
}

TEST(HealthText, countsTheRules) {
    std::vector<AlertRule> rules(AlertRule::defaults.begin(), AlertRule::defaults.end());
    EXPECT_EQ(rulesText(rules, true), QStringLiteral("13 rules watch this machine, 9 may notify you."));
    EXPECT_EQ(rulesText(rules, false), QStringLiteral("13 rules watch this machine, 0 may notify you."));
    for (AlertRule& rule : rules)
        rule.enabled = rule.kind == AlertKind::diskWrite;
    EXPECT_EQ(rulesText(rules, true), QStringLiteral("1 rule watches this machine, 1 may notify you."));
}

TEST(Freshness, isMissedOnlyAfterTwoIntervals) {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{1000});
    EXPECT_TRUE(updatedText(snapshot, Date{5000}).isEmpty()); // a first reading comes alone
    snapshot.interval = 2;
    EXPECT_TRUE(updatedText(snapshot, Date{1004}).isEmpty());
    EXPECT_EQ(updatedText(snapshot, Date{1075}), QStringLiteral("Updated 1 min ago"));
    EXPECT_TRUE(updatedText(snapshot, Date{10}).isEmpty()); // the clock was set back
}

} // namespace ostrivane
