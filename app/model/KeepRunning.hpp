#pragma once

#include <string_view>

namespace ostrivane {

/// Under which the settings keep whether the program goes on when its window is closed and no icon leads back to it: a
/// boolean, absent until the user was asked.
inline constexpr std::string_view keepRunningKey = "keepRunningInBackground";

} // namespace ostrivane
