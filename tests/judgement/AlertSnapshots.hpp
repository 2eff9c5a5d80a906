#pragma once

#include "core/judgement/AlertEngine.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane {

constexpr std::uint64_t GiB = 1ULL << 30;

/// The rule that a user starts with.
inline AlertRule defaultRule(AlertKind kind) {
    return *std::ranges::find(AlertRule::defaults, kind, &AlertRule::kind);
}

inline AlertRule ruleAt(AlertKind kind, double threshold) {
    AlertRule rule = defaultRule(kind);
    rule.threshold = threshold;
    return rule;
}

/// A machine, and an engine that watches it. Set `snapshot` as the machine should look; each tick shows it once more.
struct AlertFeed {
    explicit AlertFeed(std::vector<AlertRule> rules, double secondsPerTick = 10,
                       const PlatformWords& words = PlatformWords::macOS)
        : engine(rules, words), step(secondsPerTick) {
        snapshot.interval = secondsPerTick;
    }
    explicit AlertFeed(AlertKind kind, double secondsPerTick = 10) : AlertFeed({defaultRule(kind)}, secondsPerTick) {}

    ApplicationSnapshot& app(const std::string& key) {
        auto& apps = snapshot.applications;
        const auto found = std::ranges::find(apps, key, &ApplicationSnapshot::key);
        if (found != apps.end())
            return *found;
        apps.push_back({.key = key, .name = "Name of " + key, .pids = {1}});
        return apps.back();
    }

    std::vector<Alert> tick() {
        auto alerts = engine.evaluate(snapshot);
        snapshot.timestamp.seconds += step;
        return alerts;
    }

    /// What fires in that many seconds.
    std::vector<Alert> pass(double seconds) {
        std::vector<Alert> alerts;
        for (const Date end = snapshot.timestamp + seconds; snapshot.timestamp < end;)
            std::ranges::move(tick(), std::back_inserter(alerts));
        return alerts;
    }

    AlertEngine engine;
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{1'700'000'000});
    double step;
};

/// All that is said, one line an alert.
inline std::string told(const std::vector<Alert>& alerts) {
    std::string text;
    for (const Alert& alert : alerts)
        text += std::string(rawValue(alert.severity)) + " " + alert.subject.value_or("?") + ": " + alert.title + " | " +
                alert.body + "\n";
    return text;
}

} // namespace ostrivane
