#pragma once

#include <string_view>

namespace ostrivane {

/// Of the program, as "MAJOR.MINOR.PATCH".
extern const std::string_view version;

} // namespace ostrivane
