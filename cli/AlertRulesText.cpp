#include "cli/AlertRulesText.hpp"

#include "cli/Wording.hpp"
#include "core/model/Formatters.hpp"

#include <fmt/format.h>

namespace ostrivane::cli {

namespace {

/// The number as it was chosen: rounded it would be another one.
std::string seconds(double count) {
    constexpr double minute = 60;
    return count < minute ? fmt::format("{} s", count) : fmt::format("{} s ({})", count, Formatters::duration(count));
}

} // namespace

std::string rulesText(const std::vector<AlertRule>& rules, std::optional<int> width) {
    std::string text;
    for (const AlertRule& rule : rules) {
        text +=
            clipped(fmt::format("{:<16} {:<3}  {}", rawValue(rule.kind), rule.enabled ? "on" : "off", title(rule.kind)),
                    width) +
            "\n";
        text += joined(wrapped(fmt::format("threshold {} {}; window {}; cooldown {}; {}", rule.threshold,
                                           thresholdUnit(rule.kind), seconds(rule.window), seconds(rule.cooldown),
                                           rule.notify ? "notifies" : "does not notify"),
                               "    ", width));
    }
    return text;
}

} // namespace ostrivane::cli
