#pragma once

namespace ostrivane {

/// The name of the program's desktop entry, without ".desktop".
constexpr const char* desktopEntry = "ostrivane";

} // namespace ostrivane
