#pragma once

#include "cli/UsageTable.hpp"

#include <optional>
#include <string>
#include <string_view>

/// A table of processes or of applications for a person or a program to read.
namespace ostrivane::cli {

/// The table with a line or two below it that say what it holds and what it cannot tell.
/// @param limits  what the figures of the machine leave out; may be empty
/// @param width  of the terminal; absent without one: nothing is cut off then
std::string usageText(const SystemSnapshot& snapshot, std::string_view limits, UsageSubject subject,
                      const UsageChoice& choice, std::optional<int> width);

/// The records behind the same rows, in the same order: an array on one line.
std::string usageJSON(const SystemSnapshot& snapshot, UsageSubject subject, const UsageChoice& choice);

/// "312 processes, 140 restricted (*, owned by others); 5 shown".
std::string usageCount(const SystemSnapshot& snapshot, UsageSubject subject, std::size_t shown);

/// "No figures: power.", of what is known of no process, and the `limits`; empty when there is nothing to tell.
std::string usageGaps(const SystemSnapshot& snapshot, std::string_view limits);

} // namespace ostrivane::cli
