#pragma once

#include <string>
#include <string_view>

namespace ostrivane {

/// The desktop entry that starts the program with the user's session.
/// @param program  full path of the executable
std::string autostartEntry(std::string_view program);

/// Whether a desktop entry of that text starts something: one that says "Hidden=true" or
/// "X-GNOME-Autostart-enabled=false" does not.
bool isEnabledEntry(std::string_view text);

} // namespace ostrivane
