#include "app/pages/AlertRuleText.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

const std::vector<AlertRule> defaults(AlertRule::defaults.begin(), AlertRule::defaults.end());

const AlertRule& defaultOf(AlertKind kind) {
    return defaults[static_cast<std::size_t>(kind)];
}

TEST(RuleLine, readsAsASentenceWhateverTheUnit) {
    EXPECT_EQ(ruleLine(defaultOf(AlertKind::sustainedCPU)), "Duration · 80% of a core for 10 min");
    EXPECT_EQ(ruleLine(defaultOf(AlertKind::memoryGrowth)), "Anomaly · 1 GB for 1h");
    EXPECT_EQ(ruleLine(defaultOf(AlertKind::memoryPressure)),
              "Duration · level 2 (2 = elevated, 4 = critical) for 5 min");
    EXPECT_EQ(ruleLine(defaultOf(AlertKind::thermalPressure)), "Duration · state 2 (2 = serious) for 1 min");
    EXPECT_EQ(ruleLine(defaultOf(AlertKind::highTemperature)), "Duration · 95 °C for 3 min");
    EXPECT_EQ(ruleLine(defaultOf(AlertKind::idleServer)), "Threshold · 24 hours idle");
    // The engine compares this figure as it is; to speak of two minutes would be untrue.
    EXPECT_EQ(ruleLine(defaultOf(AlertKind::excessiveMemory)), "Threshold · 35% of RAM");
    AlertRule precise = defaultOf(AlertKind::lowStorage);
    precise.threshold = 2.25;
    EXPECT_EQ(ruleLine(precise), "Threshold · 2.25% free");
}

TEST(RulesSummary, countsThoseThatAreOn) {
    auto rules = defaults;
    EXPECT_EQ(rulesSummary(rules), "13 of 13 on, 9 notify");
    rules[0].enabled = false; // and so cannot notify
    EXPECT_EQ(rulesSummary(rules), "12 of 13 on, 8 notify");
}

TEST(RuleNumbers, areInMinutesUnlessThatWouldRound) {
    AlertRule rule = defaultOf(AlertKind::sustainedCPU);
    EXPECT_EQ(ruleNumbers(rule).lasting,
              (RuleNumber{.value = 10, .least = 2, .most = 65, .scale = 60, .unit = "minutes", .decimals = 0}));
    rule.window = 150.5;
    EXPECT_EQ(ruleNumbers(rule).lasting,
              (RuleNumber{.value = 150.5, .least = 120, .most = 3900, .scale = 1, .unit = "seconds", .decimals = 1}));
    rule.threshold = 80.25;
    EXPECT_EQ(ruleNumbers(rule).threshold.decimals, 2);
    EXPECT_EQ(ruleNumbers(defaultOf(AlertKind::swapGrowth)).threshold.decimals, 1);
    EXPECT_FALSE(ruleNumbers(defaultOf(AlertKind::lowStorage)).lasting);
}

TEST(RuleNumbers, offerWhatIsNotRefused) {
    for (const AlertRule& rule : defaults) {
        const RuleNumbers numbers = ruleNumbers(rule);
        for (const double threshold : {numbers.threshold.least, numbers.threshold.most})
            EXPECT_FALSE(problem(rule.kind, {.threshold = threshold})) << rawValue(rule.kind);
        for (const double cooldown : {numbers.cooldown.least, numbers.cooldown.most})
            EXPECT_FALSE(problem(rule.kind, {.cooldown = cooldown * numbers.cooldown.scale})) << rawValue(rule.kind);
        if (!numbers.lasting)
            continue;
        for (const double window : {numbers.lasting->least, numbers.lasting->most})
            EXPECT_FALSE(problem(rule.kind, {.window = window * numbers.lasting->scale})) << rawValue(rule.kind);
    }
}

TEST(WithChange, changesOneRuleOrRefuses) {
    const auto edited = withChange(defaults, AlertKind::diskWrite, {.threshold = 70, .notify = false});
    ASSERT_TRUE(edited);
    auto wanted = defaults;
    wanted[static_cast<std::size_t>(AlertKind::diskWrite)].threshold = 70;
    wanted[static_cast<std::size_t>(AlertKind::diskWrite)].notify = false;
    EXPECT_EQ(*edited, wanted);
    EXPECT_FALSE(withChange(defaults, AlertKind::lowStorage, {.threshold = 101}));
    EXPECT_FALSE(withChange(defaults, AlertKind::sustainedCPU, {.window = 60}));
}

} // namespace
} // namespace ostrivane
