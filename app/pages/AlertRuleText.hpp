#pragma once

#include "core/judgement/AlertRule.hpp"
#include "core/judgement/AlertRuleChange.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

/// "Duration · 80% of a core for 10 min".
std::string ruleLine(const AlertRule& rule);

/// "12 of 13 on, 9 notify".
std::string rulesSummary(const std::vector<AlertRule>& rules);

/// How a number is shown where it can be changed.
struct RuleNumber {
    double value = 0; ///< in the unit
    double least = 0;
    double most = 0;
    double scale = 1; ///< of the rule's own unit in one of this
    std::string_view unit;
    int decimals = 0;

    friend bool operator==(const RuleNumber&, const RuleNumber&) = default;
};

/// The numbers of a rule. Times are in minutes, but in seconds where they are no whole minutes.
struct RuleNumbers {
    RuleNumber threshold;
    std::optional<RuleNumber> lasting; ///< absent for a rule that fires at once
    RuleNumber cooldown;

    friend bool operator==(const RuleNumbers&, const RuleNumbers&) = default;
};
RuleNumbers ruleNumbers(const AlertRule& rule);

/// The rules with that change in one of them; absent when it is refused.
std::optional<std::vector<AlertRule>> withChange(const std::vector<AlertRule>& rules, AlertKind kind,
                                                 const AlertRuleChange& change);

} // namespace ostrivane
