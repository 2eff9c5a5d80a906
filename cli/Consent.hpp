#pragma once

#include <string_view>

namespace ostrivane::cli {

/// Whether a person can be asked, or need not be: "--yes" was given. Else it is said on standard error.
bool canDecide(bool isAgreedTo);

/// Asks on standard error; anything but "y" or "yes" is a no. `question` must be safe to print.
bool isAgreed(std::string_view question);

} // namespace ostrivane::cli
