#pragma once

#include "core/judgement/AlertRule.hpp"

#include <optional>
#include <string>
#include <vector>

namespace ostrivane::cli {

/// What a person wants to be different in a rule; what is absent stays.
struct AlertRuleChange {
    std::optional<double> threshold;
    std::optional<double> window;   ///< seconds
    std::optional<double> cooldown; ///< seconds
    std::optional<bool> enabled;
    std::optional<bool> notify;

    friend bool operator==(const AlertRuleChange&, const AlertRuleChange&) = default;
};

/// Why a rule of that kind cannot be changed so: a number with which it would never fire, or that is none.
std::optional<std::string> problem(AlertKind kind, const AlertRuleChange& change);

/// The rules that count among `rules`: one a kind, in the order of the kinds.
std::vector<AlertRule> effectiveRules(const std::vector<AlertRule>& rules);

AlertRule changed(AlertRule rule, const AlertRuleChange& change);

/// The rules for a person to read. Everything is safe to print.
std::string rulesText(const std::vector<AlertRule>& rules, std::optional<int> width);

} // namespace ostrivane::cli
