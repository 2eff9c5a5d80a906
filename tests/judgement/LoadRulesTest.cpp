#include "tests/judgement/AlertSnapshots.hpp"

#include <gtest/gtest.h>

namespace ostrivane {

namespace {

std::vector<Alert> afterSteadyLoad(double threshold, double cores) {
    AlertFeed feed({ruleAt(AlertKind::sustainedCPU, threshold)});
    feed.app("a").cpu = cores;
    return feed.pass(1200);
}

/// What fires in five minutes at `cores`, after `seconds` at the two loads in turn.
std::vector<Alert> afterQuietTime(double seconds, double load, double otherLoad, double cores) {
    AlertFeed feed(AlertKind::unusualCPU);
    for (const std::string key : {"a", "system"})
        feed.app(key).cpu = load;
    for (double passed = 0; passed < seconds; passed += 2 * feed.step) {
        feed.app("a").cpu = load;
        feed.tick();
        feed.app("a").cpu = otherLoad;
        EXPECT_EQ(told(feed.tick()), "");
    }
    for (const std::string key : {"a", "system"})
        feed.app(key).cpu = cores;
    return feed.pass(300);
}

} // namespace

TEST(LoadRules, tellOfSustainedLoadOnceNineTenthsOfTheWindowAreKnown) {
    AlertFeed feed(AlertKind::sustainedCPU);
    feed.app("a").cpu = 0.85;
    feed.app("idle").cpu = 0.1;
    feed.app("system").cpu = 5;
    EXPECT_EQ(told(feed.pass(540)), ""); // 55 points span 540 seconds
    EXPECT_EQ(told(feed.tick()), "warning a: Name of a is keeping the CPU busy | 85% on average for 10 min.\n");
    feed.app("a").cpu = 0;
    feed.app("b").cpu = 8; // four minutes of a new one
    EXPECT_EQ(told(feed.pass(240)), "");
}

TEST(LoadRules, weighSustainedLoadByFullCores) {
    EXPECT_EQ(told(afterSteadyLoad(75, 0.7421875)), "");
    EXPECT_EQ(afterSteadyLoad(75, 0.75).at(0).severity, AlertSeverity::warning);
    EXPECT_EQ(afterSteadyLoad(75, 1.9921875).at(0).severity, AlertSeverity::warning);
    EXPECT_EQ(afterSteadyLoad(75, 2).at(0).severity, AlertSeverity::critical);
}

TEST(LoadRules, tellOfLoadThatIsUnusualForTheApplication) {
    EXPECT_EQ(
        told(afterQuietTime(3600, 0.0625, 0.0625, 1)),
        "info a: Name of a is using unusually high CPU | 52% over the last 5 min, versus 6.2% typical over the past "
        "hour.\n");
    EXPECT_EQ(told(afterQuietTime(3600, 0.0625, 0.0625, 0.484375)), ""); // below the threshold
    EXPECT_EQ(told(afterQuietTime(3600, 0.25, 0.25, 0.75)), "");         // not above three times the mean
    EXPECT_EQ(afterQuietTime(3600, 0.25, 0.25, 0.8125).size(), 1U);      //
    EXPECT_EQ(told(afterQuietTime(3600, 0.0625, 0.4375, 0.9375)), "");   // not above four deviations: 1.002
    EXPECT_EQ(afterQuietTime(3600, 0.0625, 0.4375, 1.0625).size(), 1U);  //
    EXPECT_EQ(told(afterQuietTime(1400, 0.0625, 0.0625, 1)), "");        // half an hour has to be known
    EXPECT_EQ(afterQuietTime(1600, 0.0625, 0.0625, 1).size(), 1U);
}

TEST(LoadRules, tellOfHeavyTrafficOfTheSystemToo) {
    AlertFeed feed({defaultRule(AlertKind::networkHeavy), defaultRule(AlertKind::diskWrite)});
    feed.app("below").diskWriteRate = 49'999'999;
    feed.app("below").netInRate = 9'999'999;
    feed.app("untold").netOutRate = 1e9;
    feed.app("system").diskWriteRate = 50e6;
    feed.app("b").netInRate = 4e6;
    feed.app("b").netOutRate = 6e6;
    feed.app("a").netInRate = 10e6;
    EXPECT_EQ(told(feed.pass(270)), "");
    EXPECT_EQ(told(feed.tick()),
              "warning system: Name of system is hammering the disk | 50.0 MB/s on average for 5 min (about 14.0 GB).\n"
              "warning a: Name of a is moving a lot of data | 10.0 MB/s on average for 5 min (about 2.79 GB).\n"
              "warning b: Name of b is moving a lot of data | 10.0 MB/s on average for 5 min (about 2.79 GB).\n");
}

} // namespace ostrivane
