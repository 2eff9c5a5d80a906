#pragma once

#include "core/judgement/Alert.hpp"
#include "core/judgement/AlertBook.hpp"
#include "core/judgement/AlertRule.hpp"
#include "core/judgement/AlertSeries.hpp"
#include "core/model/PlatformWords.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrivane {

/// What the rules look at.
struct AlertScene {
    const SystemSnapshot& snapshot;
    AlertSeries& series; ///< `snapshot` is part of it already
    const PlatformWords& words;

    double now() const { return snapshot.timestamp.seconds; }
};

/// One rule at work on one snapshot.
class AlertRun {
public:
    AlertRun(const AlertRule& rule, const AlertScene& scene, AlertBook& book, std::vector<Alert>& alerts);

    const AlertRule& rule;
    const AlertScene& scene;

    /// A new alert whose texts are to be filled in; null while the rule is cooling down about `subject`.
    Alert* fire(std::string_view subject, AlertSeverity severity);

    /// Calls `judge(key, series)` for each application that is remembered and that the rule is not cooling down about:
    /// about the others nothing could fire, whatever there is to add up. What fires is in the order of the keys.
    template <class Judge>
    void eachApplication(Judge judge) {
        for (auto& [key, series] : scene.series.apps) {
            std::optional<double>& lastFired = series.lastFired[static_cast<std::size_t>(rule.kind)];
            if (lastFired && scene.now() - *lastFired < rule.cooldown)
                continue;
            const std::size_t before = alerts.size();
            judge(key, std::as_const(series));
            if (alerts.size() > before)
                lastFired = scene.now();
        }
        sortBySubject();
    }

private:
    void sortBySubject();

    AlertBook& book;
    std::vector<Alert>& alerts; ///< of all rules
    std::size_t first;          ///< of this rule's
};

} // namespace ostrivane
