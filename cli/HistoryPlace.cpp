#include "cli/HistoryPlace.hpp"

#include "cli/Output.hpp"
#include "core/history/HistoryLock.hpp"
#include "core/model/Saturating.hpp"
#include "core/model/Text.hpp"
#include "core/sampling/platform/UserFolders.hpp"

#include <fmt/format.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace ostrivane::cli {

namespace {

/// The folder, or the nearest one above it that is there.
std::string standingFolder(std::filesystem::path folder) {
    std::error_code ignored;
    while (!std::filesystem::exists(folder, ignored) && folder.has_relative_path())
        folder = folder.parent_path();
    return folder.string();
}

std::optional<HistoryWriter> writerIn(const std::string& folder) {
    const auto holder = HistoryLock::holder(folder);
    return holder ? std::optional(HistoryWriter{holder->pid, holder->name, holder->note}) : std::nullopt;
}

} // namespace

HistoryPlace historyPlace(const std::string& folder) {
    HistoryPlace place{.folder = folder, .file = fmt::format("{}/{}", folder, UserFolders::historyFile), .writer = {}};
    struct stat status {};
    if (::stat(place.file.c_str(), &status) == 0) {
        place.exists = true;
        place.isOthers = status.st_uid != ::geteuid();
        if (!S_ISREG(status.st_mode))
            place.problem = place.file + ": not an ordinary file";
    } else if (errno != ENOENT) {
        place.problem = place.file + ": " + std::generic_category().message(errno);
    }
    const std::string standing = standingFolder(folder);
    place.isWritable = ::access(standing.c_str(), W_OK | X_OK) == 0;
    struct statvfs disk {};
    if (::statvfs(standing.c_str(), &disk) == 0 && disk.f_blocks > 0) // none: no disk at all
        place.freeBytes = saturatingProduct(disk.f_bavail, disk.f_frsize);
    place.writer = writerIn(folder);
    return place;
}

std::optional<std::string> historyFolder() {
    auto folder = UserFolders::dataDirectory();
    if (!folder)
        writeError("No folder for the history: OSTRIVANE_DATA_DIR, or HOME without it, must be a full path.");
    return folder;
}

std::optional<HistoryPlace> historyPlace() {
    const auto folder = historyFolder();
    return folder ? std::optional(historyPlace(*folder)) : std::nullopt;
}

std::string noHistoryText(const HistoryPlace& place) {
    return fmt::format("There is no history yet. \"ostrivanectl monitor\" keeps one in {}\n",
                       Text::visible(place.file));
}

std::vector<std::string> remarks(const HistoryPlace& place) {
    std::vector<std::string> sentences;
    if (!place.isWritable)
        sentences.emplace_back("The folder cannot be written to; no history can be kept in it.");
    if (place.freeBytes == 0)
        sentences.emplace_back("The disk is full; nothing can be added.");
    if (place.isOthers)
        sentences.emplace_back("The file belongs to another user.");
    if (place.writer && !place.writer->note.empty())
        sentences.push_back("What keeps the history says: " + Text::visible(place.writer->note));
    return sentences;
}

} // namespace ostrivane::cli
