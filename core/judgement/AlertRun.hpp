#pragma once

#include "core/judgement/Alert.hpp"
#include "core/judgement/AlertBook.hpp"
#include "core/judgement/AlertRule.hpp"
#include "core/judgement/AlertSeries.hpp"
#include "core/model/PlatformWords.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <cstddef>
#include <string_view>
#include <vector>

namespace ostrivane {

/// What the rules look at.
struct AlertScene {
    const SystemSnapshot& snapshot;
    const AlertSeries& series; ///< `snapshot` is part of it already
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

    /// Calls `judge(key, series)` for each application that is remembered. What fires is in the order of the keys.
    template <class Judge>
    void eachApplication(Judge judge) {
        for (const auto& [key, series] : scene.series.apps)
            judge(key, series);
        sortBySubject();
    }

private:
    void sortBySubject();

    AlertBook& book;
    std::vector<Alert>& alerts; ///< of all rules
    std::size_t first;          ///< of this rule's
};

} // namespace ostrivane
