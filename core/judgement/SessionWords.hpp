#pragma once

#include <string_view>

/// Why a session has no figures, in every face of the program.
namespace ostrivane::SessionWords {

inline constexpr std::string_view tooShort = "It was too short for a reading: nothing is known of what it used.";
inline constexpr std::string_view unreadable = "Its summary cannot be read.";
inline constexpr std::string_view endless = "It has no end: it is being recorded now, or what recorded it was cut off.";

} // namespace ostrivane::SessionWords
