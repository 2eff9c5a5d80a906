#pragma once

#include "cli/Commands.hpp"

#include <optional>
#include <string_view>

namespace ostrivane::cli {

enum class Written {
    whole,
    closed, ///< nobody reads any more: the ordinary end of a pipe
    failed  ///< the reason stands on standard error
};

/// Writes `text` to standard output at once.
Written writeOut(std::string_view text);

/// What a command answers whose last deed was this writing: a closed pipe is an ordinary end.
ExitStatus statusAfter(Written written);

/// Columns of the terminal that standard output is, or another descriptor; absent when it is none, or does not tell.
std::optional<int> terminalWidth();
std::optional<int> terminalWidth(int descriptor);

/// Writes a line to standard error as it is.
void writeNote(std::string_view line);

/// Writes "ostrivanectl: MESSAGE" and a line feed to standard error, with control characters made visible.
void writeError(std::string_view message);

} // namespace ostrivane::cli
