#pragma once

#include <string_view>

/// Before what cannot be undone.
namespace ostrivane::cli {

/// Whether there is a terminal to ask on; says on standard error when there is none.
bool canAsk();

/// Asks on the terminal; anything but a yes is a no.
bool isAgreed(std::string_view question);

} // namespace ostrivane::cli
