#pragma once

#include <string_view>

namespace ostrivane {

/// What texts call the machine and its system. Each platform says what is true there; both wordings stand here alone.
struct PlatformWords {
    std::string_view computer;      ///< after "this", "your" or "the"
    std::string_view system;        ///< within a sentence
    std::string_view systemAtStart; ///< at the start of a sentence
    std::string_view systemLabel;   ///< before a noun, as in "System thermal state"

    static const PlatformWords macOS;
    static const PlatformWords Linux;
};

inline constexpr PlatformWords PlatformWords::macOS{"Mac", "macOS", "macOS", "macOS"};
inline constexpr PlatformWords PlatformWords::Linux{"computer", "the system", "The system", "System"};

} // namespace ostrivane
