#pragma once

#include "core/judgement/AlertRule.hpp"

#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// What a person wants to be different in a rule; what is absent stays.
struct AlertRuleChange {
    std::optional<double> threshold;
    std::optional<double> window;   ///< seconds
    std::optional<double> cooldown; ///< seconds
    std::optional<bool> enabled;
    std::optional<bool> notify;

    friend bool operator==(const AlertRuleChange&, const AlertRuleChange&) = default;
};

/// The numbers with which a rule can fire; the threshold in its unit, the others in seconds. Threshold and cooldown
/// begin at 0.
struct AlertRuleLimits {
    double mostThreshold = 0;
    double leastWindow = 0;
    double mostWindow = 0;
    double mostCooldown = 0;
};
AlertRuleLimits limits(AlertKind kind);

/// Whether a rule of that kind looks at its window; others fire at once.
bool looksAtWindow(AlertKind kind);

/// Why a rule of that kind cannot be changed so: a number with which it would never fire, or that is none.
std::optional<std::string> problem(AlertKind kind, const AlertRuleChange& change);

/// The rules that count among `rules`: one a kind, in the order of the kinds.
std::vector<AlertRule> effectiveRules(const std::vector<AlertRule>& rules);

AlertRule changed(AlertRule rule, const AlertRuleChange& change);

} // namespace ostrivane
