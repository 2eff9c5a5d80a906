#pragma once

#include "core/history/HistoryLock.hpp"

#include <string>
#include <variant>

namespace ostrivane {

/// Makes the history's folder where it is missing, and takes its lock for the program called `name`: the lock, who has
/// it, or why it could not be asked for, in the user's words.
std::variant<HistoryLock, HistoryLock::Holder, HistoryLock::Problem> claimHistory(const std::string& folder,
                                                                                  const std::string& name);

/// "Another program keeps the history: NAME (process PID)."
std::string refusal(const HistoryLock::Holder& holder);

} // namespace ostrivane
