#pragma once

#include <string_view>

namespace ostrivane::cli {

enum class Written {
    whole,
    closed, ///< nobody reads any more: the ordinary end of a pipe
    failed  ///< the reason stands on standard error
};

/// Writes `text` to standard output at once.
Written writeOut(std::string_view text);

/// Writes a line to standard error as it is.
void writeNote(std::string_view line);

/// Writes "ostrivanectl: MESSAGE" and a line feed to standard error, with control characters made visible.
void writeError(std::string_view message);

} // namespace ostrivane::cli
