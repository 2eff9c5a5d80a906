#pragma once

#include "cli/HistoryPlace.hpp"
#include "core/history/HistoryStatus.hpp"
#include "core/model/Described.hpp"

#include <optional>
#include <string>

namespace ostrivane::cli {

/// All that can be told about the history file.
struct HistoryReport {
    HistoryPlace place;
    std::optional<HistoryStatus> status; ///< absent when the file was not opened, because there is none
};
BOOST_DESCRIBE_STRUCT(HistoryReport, (), (place, status))
static_assert(describesEveryMember<HistoryReport>);

/// For a person to read. What keeps the file from being read is not in it: that belongs on standard error.
std::string statusText(const HistoryReport& report);

/// Why the file could not be read, or not to its end; absent when it could, and when there is none.
std::optional<std::string> readProblem(const HistoryReport& report);

/// What the file held before everything was deleted, and after.
struct Cleared {
    HistoryStatus before;
    HistoryStatus after;
};
BOOST_DESCRIBE_STRUCT(Cleared, (), (before, after))
static_assert(describesEveryMember<Cleared>);

std::string clearedText(const Cleared& cleared);

} // namespace ostrivane::cli
