#include "tests/judgement/AlertSnapshots.hpp"
#include "tests/judgement/PlainLoadRules.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace ostrivane {

namespace {

/// Rules whose windows and pauses are short, so that much happens in a few hours.
std::vector<AlertRule> hastyRules(double cooldown) {
    std::vector<AlertRule> rules;
    for (const AlertKind kind :
         {AlertKind::sustainedCPU, AlertKind::unusualCPU, AlertKind::memoryGrowth, AlertKind::diskWrite}) {
        AlertRule rule = defaultRule(kind);
        rule.cooldown = cooldown;
        rules.push_back(rule);
    }
    return rules;
}

/// Applications that are quiet for long, then busy or leaking for long, and that are gone at times for longer than they
/// are remembered.
class Crowd {
public:
    explicit Crowd(unsigned seed) : random(seed), moods(6) {}

    void show(SystemSnapshot& snapshot) {
        snapshot.applications.clear();
        for (std::size_t at = 0; at < moods.size(); ++at) {
            Mood& mood = moods[at];
            if (mood.ticksLeft-- == 0)
                mood = newMood(mood.memory);
            mood.memory += mood.leak;
            if (mood.isGone)
                continue;
            ApplicationSnapshot app;
            app.key = "exe:" + std::to_string(at);
            app.name = app.key;
            app.cpu = mood.cpu * chance(0.5, 1.5);
            app.memory = static_cast<std::uint64_t>(mood.memory);
            app.diskWriteRate = mood.diskWrite * chance(0.5, 1.5);
            snapshot.applications.push_back(app);
        }
    }

private:
    struct Mood {
        int ticksLeft = 0;
        double memory = 1e9;
        bool isGone = false;
        double cpu = 0;
        double diskWrite = 0;
        double leak = 0; ///< bytes a tick
    };

    double chance(double low, double high) { return std::uniform_real_distribution(low, high)(random); }

    Mood newMood(double memory) {
        constexpr double loads[] = {0.005, 0.05, 0.3, 1, 2.5};
        const bool isBusy = chance(0, 1) < 0.4;
        return {.ticksLeft = static_cast<int>(chance(10, 300)),
                .memory = memory > 2e10 ? 1e9 : memory,
                .isGone = chance(0, 1) < 0.15,
                .cpu = loads[static_cast<std::size_t>(chance(0, isBusy ? 5 : 2))],
                .diskWrite = isBusy ? 70e6 : 1e4,
                .leak = chance(0, 1) < 0.3 ? chance(0, 2e7) : 0};
    }

    std::mt19937 random;
    std::vector<Mood> moods;
};

} // namespace

TEST(LoadRules, takeNoShortcutThatChangesWhatFires) {
    std::map<AlertKind, int> fired;
    for (const unsigned seed : {1U, 2U}) {
        AlertEngine engine(hastyRules(900), PlatformWords::Linux);
        PlainLoadRules plain(hastyRules(900));
        Crowd crowd(seed);
        SystemSnapshot snapshot = SystemSnapshot::empty(Date{1'700'000'000});
        snapshot.interval = 7; // no divisor of the spacings: points hold one sample or two
        for (int tick = 0; tick < 2400; ++tick) {
            if (tick == 1000) { // a shorter pause ends those that are under way
                engine.update(hastyRules(60));
                plain.update(hastyRules(60));
            }
            snapshot.timestamp.seconds += tick == 2000 ? -300 : 7; // the clock is set back once
            crowd.show(snapshot);
            PlainLoadRules::Due due;
            for (const Alert& alert : engine.evaluate(snapshot)) {
                due.emplace(alert.kind, *alert.subject);
                ++fired[alert.kind];
            }
            ASSERT_EQ(due, plain.evaluate(snapshot)) << "seed " << seed << ", tick " << tick;
        }
    }
    for (const AlertRule& rule : hastyRules(0))
        EXPECT_GT(fired[rule.kind], 5) << rawValue(rule.kind);
}

} // namespace ostrivane
