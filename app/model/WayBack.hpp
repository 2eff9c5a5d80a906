#pragma once

#include <string_view>

namespace ostrivane {

/// How a person comes back to a program whose window is closed.
enum class WayBack {
    icon,         ///< its icon in the tray or the menu bar
    system,       ///< the system shows that it runs, and opens it again
    furtherStart, ///< starting it again shows the window; nothing tells that it runs
    none          ///< nothing: it must not run without its window
};

/// Under which the settings keep whether the program goes on when its window is closed and only a further start leads
/// back to it: a boolean, absent until the user was asked.
inline constexpr std::string_view keepRunningKey = "keepRunningInBackground";

} // namespace ostrivane
