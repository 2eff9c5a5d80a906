#include "cli/AlertRulesText.hpp"

#include "core/judgement/AlertRuleChange.hpp"
#include "core/model/Text.hpp"

#include <gtest/gtest.h>

namespace ostrivane::cli {
namespace {

const std::vector<AlertRule> defaults(AlertRule::defaults.begin(), AlertRule::defaults.end());

TEST(RulesText, showsEveryNumberAsItWasChosen) {
    AlertRule rule = changed(defaults[0], {.threshold = 80.25, .window = 61, .enabled = false});
    EXPECT_EQ(rulesText({rule}, std::nullopt),
              "sustainedCPU     off  Sustained high CPU\n"
              "    threshold 80.25 % of a core; window 61 s (1 min); cooldown 3600 s (1h); notifies\n");
    for (const int width : {1, 20, 80}) {
        const std::string text = rulesText(defaults, width);
        for (const std::string_view line : Text::lines(text))
            EXPECT_LE(Text::columns(line), width) << line;
    }
}

} // namespace
} // namespace ostrivane::cli
