#pragma once

#include <optional>

#include <sys/types.h>

namespace ostrivane {

/// What a child process begins with. It is in a session of its own, which can be ended as a whole and has no terminal
/// to ask at; no signal is ignored or held back, whatever the host program does with them; there is no input, and error
/// output is thrown away; no other descriptor of ours; and the limits of resources that this program was started with.
struct ChildLaunch {
    const char* path = nullptr;
    char* const* arguments = nullptr;   ///< ends in a null pointer
    char* const* environment = nullptr; ///< the same
    int output = -1;                    ///< becomes its standard output; none of the standard three

    /// Starts it; the caller waits for the process. Absent when the program cannot be run.
    std::optional<pid_t> start() const;
};

} // namespace ostrivane
