#pragma once

#include "cli/HistoryReader.hpp"

#include <functional>
#include <optional>
#include <string>

namespace ostrivane::cli {

/// What a command prints of the history, or why it cannot.
struct HistoryAnswer {
    std::string text;
    std::optional<std::string> problem = std::nullopt;
};

/// Prints what `present` makes of the user's own history, and answers the exit status. Where there is none yet, that is
/// said to a person; for `json`, `present` is asked all the same.
int printHistory(bool json, const std::function<HistoryAnswer(HistoryReader&)>& present);

/// Works on the user's own history, beside whoever keeps it, as `change` does. Where there is none yet, that is said.
int changeHistory(const std::function<HistoryAnswer(HistoryReader&)>& change);

} // namespace ostrivane::cli
