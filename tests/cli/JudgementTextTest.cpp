#include "cli/JudgementText.hpp"

#include "tests/cli/PrintedText.hpp"

#include <gtest/gtest.h>

namespace ostrivane::cli {
namespace {

constexpr Date now{1'800'000'000};
constexpr std::string_view hostile = "Evil\x1b[2J\nname";

HealthCategory category(HealthCategory::Status status, std::string name) {
    return {.id = "x", .name = std::move(name), .status = status, .label = "Label", .evidence = {}};
}

TEST(HealthText, tellsEachStatusByWordAndMark) {
    using Status = HealthCategory::Status;
    HealthCategory memory = category(Status::elevated, "Memory");
    memory.evidence = {"Pressure has stayed elevated for 5 min.", "2.00 GB of swap in use."};
    const std::string text = healthText(
        "Memory, Heat need attention",
        {category(Status::good, "CPU"), memory, category(Status::high, "Heat"), category(Status::unknown, "Storage")},
        std::nullopt);
    EXPECT_EQ(text, "Memory, Heat need attention\n\n"
                    "[ok] good      CPU: Label\n"
                    "[!]  elevated  Memory: Label\n"
                    "     Pressure has stayed elevated for 5 min.\n"
                    "     2.00 GB of swap in use.\n"
                    "[!!] high      Heat: Label\n"
                    "[?]  unknown   Storage: Label\n");
}

TEST(JudgementText, fitsEveryWidthWhateverNamesHold) {
    const std::string evil = std::string(hostile) + " " + std::string(100, 'w') + " one two three four five six";
    HealthCategory health = category(HealthCategory::Status::high, evil);
    health.evidence = {evil};
    Insight insight{.id = "i", .level = Insight::Level::warning, .title = evil, .evidence = evil};
    StoredAlert stored{.date = now, .severity = evil, .title = evil, .body = evil, .subject = evil};
    for (const int width : {1, 7, 20, 40, 80, 200}) {
        expectWithin(healthText(evil, {health}, width), width);
        expectWithin(insightsText({insight}, width), width);
        expectWithin(alertsText({stored}, width), width);
    }
}

TEST(InsightsText, breaksLongFindingsAndAdmitsThatThereIsNone) {
    EXPECT_EQ(insightsText({}, 80), "Nothing stands out right now.\n");
    const Insight insight{.id = "i",
                          .level = Insight::Level::notice,
                          .title = "Writer is responsible for 61% of application memory",
                          .evidence = "5 GB across 3 processes."};
    EXPECT_EQ(insightsText({insight}, 48), "[!]  notice    Writer is responsible for 61% of\n"
                                           "               application memory\n"
                                           "     5 GB across 3 processes.\n");
}

TEST(AlertsText, tellsWhatWasSaidAndAboutWhat) {
    StoredAlert alert{.date = now, .severity = "warning", .title = std::string(hostile)};
    alert.body = "one two three four five six seven eight nine ten " + std::string(60, 'x');
    alert.subject = "exe:writer";
    const std::string text = alertsText({alert}, 40);
    expectWithin(text, 40);
    EXPECT_TRUE(holds(text, "\n    one two three four five six seven\n    eight nine ten\n")) << text;
    EXPECT_TRUE(holds(text, "\n    About: exe:writer\n")) << text;
    EXPECT_TRUE(holds(alertsText({alert}, std::nullopt), "nine ten xxx"));
    EXPECT_EQ(alertsText({}, 40), "There are no alerts.\n");
    const Alert live{.date = alert.date,
                     .severity = AlertSeverity::warning,
                     .title = alert.title,
                     .body = alert.body,
                     .subject = alert.subject};
    std::string same;
    for (const StyledLine& line : alertLines({live}, 40))
        same += plainText(line) + "\n";
    EXPECT_EQ(same, text) << "an alert reads the same before and after it was stored";
}

} // namespace
} // namespace ostrivane::cli
