#pragma once

#include <string>
#include <string_view>

/// What several rules need for their texts.
namespace ostrivane::AlertRules {

/// The key of what belongs to no application. Most rules leave it alone: nobody could quit it.
inline constexpr std::string_view systemKey = "system";

/// `figure` without its fraction.
std::string truncated(double figure);

} // namespace ostrivane::AlertRules
