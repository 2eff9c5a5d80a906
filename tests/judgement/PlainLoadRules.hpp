#pragma once

#include "core/judgement/AlertRule.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/RollingSeries.hpp"
#include "core/model/Statistics.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane {

/// The rules over the loads of applications, worked out from whole windows on every tick, with no shortcut. Tells the
/// kind and the subject of what is due.
class PlainLoadRules {
public:
    using Due = std::multiset<std::pair<AlertKind, std::string>>;

    explicit PlainLoadRules(std::vector<AlertRule> chosen) : rules(std::move(chosen)) {}

    void update(std::vector<AlertRule> next) { rules = std::move(next); }

    Due evaluate(const SystemSnapshot& snapshot) {
        now = snapshot.timestamp.seconds;
        for (const ApplicationSnapshot& app : snapshot.applications) {
            Past& past = apps[app.key];
            past.lastSeen = now;
            past.cpu.append(app.cpu, now);
            past.memory.append(static_cast<double>(app.memory), now);
            past.diskWrite.append(app.diskWriteRate, now);
        }
        std::erase_if(apps, [this](const auto& entry) { return now - entry.second.lastSeen > 600; });
        Due due;
        for (const AlertRule& rule : rules)
            for (const auto& [key, past] : apps)
                if (holds(rule, past) && fires(rule, key))
                    due.emplace(rule.kind, key);
        return due;
    }

private:
    struct Past {
        double lastSeen = 0;
        RollingSeries cpu{3900, 10};
        RollingSeries memory{10800, 30};
        RollingSeries diskWrite{1800, 10};
    };

    bool holds(const AlertRule& rule, const Past& past) const {
        switch (rule.kind) {
        case AlertKind::sustainedCPU:
            return isCovered(past.cpu, rule) && *past.cpu.mean(rule.window, now) * 100 >= rule.threshold;
        case AlertKind::diskWrite:
            return isCovered(past.diskWrite, rule) &&
                   *past.diskWrite.mean(rule.window, now) >= rule.threshold * 1'000'000;
        case AlertKind::unusualCPU:
            return isUnusual(rule, past.cpu);
        case AlertKind::memoryGrowth:
            return grows(rule, past.memory);
        default:
            return false;
        }
    }

    bool isCovered(const RollingSeries& series, const AlertRule& rule) const {
        return !series.window(rule.window, now).empty() && series.coverage(rule.window, now) >= 0.9 * rule.window;
    }

    bool isUnusual(const AlertRule& rule, const RollingSeries& cpu) const {
        std::vector<double> before;
        for (const TimedValue& point : cpu.window(3600, now))
            if (point.time < now - rule.window)
                before.push_back(point.value);
        const auto recent = cpu.mean(rule.window, now);
        const auto baseline = Statistics::meanAndStdDev(before);
        return recent && baseline && cpu.coverage(3600, now) >= 1800 && *recent * 100 >= rule.threshold &&
               *recent > baseline->mean + 4 * std::max(baseline->sd, 0.02) && *recent > 3 * baseline->mean;
    }

    bool grows(const AlertRule& rule, const RollingSeries& memory) const {
        const auto points = memory.window(rule.window, now);
        const auto fit = Statistics::linearFit(points);
        return fit && Statistics::timeSpan(points) >= 0.75 * rule.window && fit->slope > 0 && fit->r2 >= 0.8 &&
               (points.back().value - points.front().value) / (1 << 30) >= rule.threshold;
    }

    bool fires(const AlertRule& rule, const std::string& key) {
        const auto [last, isFirst] = lastFired.emplace(std::pair(rule.kind, key), now);
        if (!isFirst && now - last->second < rule.cooldown)
            return false;
        last->second = now;
        return true;
    }

    std::vector<AlertRule> rules;
    std::map<std::string, Past> apps;
    std::map<std::pair<AlertKind, std::string>, double> lastFired;
    double now = 0;
};

} // namespace ostrivane
