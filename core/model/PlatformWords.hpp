#pragma once

#include <string_view>

namespace ostrivane {

/// What texts call the machine and its system. Each platform says what is true there; both wordings stand here alone.
struct PlatformWords {
    std::string_view computer;      ///< after "this", "your" or "the"
    std::string_view computerLabel; ///< before a noun, as in "Mac Health"
    std::string_view system;        ///< within a sentence
    std::string_view systemAtStart; ///< at the start of a sentence
    std::string_view systemLabel;   ///< before a noun, as in "System thermal state"

    // What the memory that is counted as Docker's holds: a virtual machine's, or that of the processes in containers.
    std::string_view containerMemory;        ///< after a sentence about the running containers
    std::string_view unseenContainersMemory; ///< when nothing is known of them

    static const PlatformWords macOS;
    static const PlatformWords Linux;
};

inline constexpr PlatformWords PlatformWords::macOS{
    "Mac",
    "Mac",
    "macOS",
    "macOS",
    "macOS",
    "The VM keeps its memory even when containers are idle.",
    "The Docker VM keeps its memory reserved even when containers are idle."};
inline constexpr PlatformWords PlatformWords::Linux{"computer",
                                                    "System",
                                                    "the system",
                                                    "The system",
                                                    "System",
                                                    "What runs in containers counts towards it, idle or not.",
                                                    "What runs in containers counts towards it, idle or not."};

} // namespace ostrivane
