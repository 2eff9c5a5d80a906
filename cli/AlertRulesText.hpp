#pragma once

#include "core/judgement/AlertRule.hpp"

#include <optional>
#include <string>
#include <vector>

namespace ostrivane::cli {

/// The rules for a person to read. Everything is safe to print.
std::string rulesText(const std::vector<AlertRule>& rules, std::optional<int> width);

} // namespace ostrivane::cli
