#pragma once

#include <string_view>

/// The text of /proc/swaps: a line of headings and one line an area of swap, the file or device first.
namespace ostrivane::ProcSwaps {

/// Whether there is an area, and each is a device that lives compressed in memory (zram).
bool areAllMemory(std::string_view text);

} // namespace ostrivane::ProcSwaps
