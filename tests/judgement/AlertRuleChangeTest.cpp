#include "core/judgement/AlertRuleChange.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace ostrivane {
namespace {

const std::vector<AlertRule> defaults(AlertRule::defaults.begin(), AlertRule::defaults.end());

TEST(AlertRuleChange, refusesNumbersWithWhichARuleNeverFires) {
    const auto isFine = [](AlertKind kind, const AlertRuleChange& change) { return !problem(kind, change); };
    EXPECT_TRUE(isFine(AlertKind::lowStorage, {.threshold = 100, .window = 0, .cooldown = 0}));
    EXPECT_TRUE(isFine(AlertKind::sustainedCPU, {.threshold = 6400, .window = 3900}));
    for (const double odd :
         {-0.5, 1e300, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_FALSE(isFine(AlertKind::diskWrite, {.threshold = odd})) << odd;
        EXPECT_FALSE(isFine(AlertKind::diskWrite, {.window = odd})) << odd;
        EXPECT_FALSE(isFine(AlertKind::diskWrite, {.cooldown = odd})) << odd;
    }
    EXPECT_EQ(problem(AlertKind::lowStorage, {.threshold = 101}),
              "the threshold must be a number from 0 to 100 (% free)");
    EXPECT_EQ(problem(AlertKind::sustainedCPU, {.window = 60}),
              "the window must be 120 seconds or more: a shorter one holds too few readings");
    EXPECT_TRUE(isFine(AlertKind::thermalPressure, {.window = 60}));
    EXPECT_EQ(problem(AlertKind::diskWrite, {.window = 1801}), "the window must be a number from 0 to 1800 (seconds)");
    for (const AlertRule& rule : AlertRule::defaults)
        EXPECT_TRUE(isFine(rule.kind, {.threshold = rule.threshold, .window = rule.window, .cooldown = rule.cooldown}))
            << rawValue(rule.kind);
}

TEST(AlertRuleChange, changesWhatItNamesAlone) {
    const AlertRule rule = defaults[0];
    EXPECT_EQ(changed(rule, {}), rule);
    AlertRule wanted = rule;
    wanted.threshold = 0;
    wanted.notify = false;
    EXPECT_EQ(changed(rule, {.threshold = 0, .notify = false}), wanted);
}

TEST(EffectiveRules, areOneAKindInOrderTheLastOfEach) {
    AlertRule first = defaults[12], last = defaults[12];
    first.threshold = 1;
    last.threshold = 2;
    const auto rules = effectiveRules({first, last});
    ASSERT_EQ(rules.size(), defaults.size());
    EXPECT_EQ(rules[12].threshold, 2);
    for (std::size_t index = 0; index < 12; ++index)
        EXPECT_EQ(rules[index], defaults[index]);
}

} // namespace
} // namespace ostrivane
