#pragma once

#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane::cli {

/// Another process that keeps the history now.
struct HistoryWriter {
    std::int64_t pid = 0; ///< 0: it does not tell
    std::string name;
    std::string note; ///< what stands in its way; empty when nothing does
};
BOOST_DESCRIBE_STRUCT(HistoryWriter, (), (pid, name, note))
static_assert(describesEveryMember<HistoryWriter>);

/// Where the history file lies, and what the file system tells of that.
struct HistoryPlace {
    std::string folder;
    std::string file;
    bool exists = false;
    std::optional<std::string> problem;     ///< why it can be no history: it is no file, or cannot be looked at
    bool isOthers = false;                  ///< the file belongs to another user
    bool isWritable = false;                ///< files can be made in the folder, or the folder itself can be made
    std::optional<std::uint64_t> freeBytes; ///< left on the disk for this user
    std::optional<HistoryWriter> writer;    ///< absent when nothing keeps a history there now
};
BOOST_DESCRIBE_STRUCT(HistoryPlace, (), (folder, file, exists, problem, isOthers, isWritable, freeBytes, writer))
static_assert(describesEveryMember<HistoryPlace>);

/// The folder of the user's own history, which need not be there. Says on standard error why there is none.
std::optional<std::string> historyFolder();

HistoryPlace historyPlace(const std::string& folder);

/// The user's own, as `historyFolder` finds it.
std::optional<HistoryPlace> historyPlace();

/// "There is no history yet.", and how to begin.
std::string noHistoryText(const HistoryPlace& place);

/// What a person should know about the place, one sentence each; empty when all is well.
std::vector<std::string> remarks(const HistoryPlace& place);

} // namespace ostrivane::cli
