#include "core/history/HistoryLock.hpp"

#include "core/model/Text.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrivane {

namespace {

constexpr mode_t ownerOnly = 0600;
constexpr std::size_t longestLine = 500; ///< bytes
constexpr std::size_t longestText = 4096;

// `flock`, and not the locks of `fcntl`: those go as soon as the process closes any descriptor of the file, as every
// part of the program that looks into the user's files would.
bool lock(int descriptor, int kind) {
    int result;
    do
        result = ::flock(descriptor, kind | LOCK_NB);
    while (result != 0 && errno == EINTR);
    return result == 0;
}

std::string pathIn(const std::string& folder) {
    return folder + "/history.lock";
}

/// Neither a link nor a pipe that waits for its other end leads anywhere.
int openAt(const std::string& path, int flags) {
    return ::open(path.c_str(), flags | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, ownerOnly);
}

bool isOrdinary(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// Nobody removed or replaced the file while it was being locked.
bool isStillAt(const std::string& path, int descriptor) {
    struct stat opened {};
    struct stat named {};
    return ::fstat(descriptor, &opened) == 0 && ::lstat(path.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
           opened.st_dev == named.st_dev;
}

std::string oneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char character) { return character == '\n' || character == '\0'; }, ' ');
    return text.substr(0, longestLine);
}

HistoryLock::Holder readFrom(int descriptor) {
    std::array<char, longestText> text{};
    const ssize_t size = ::pread(descriptor, text.data(), text.size(), 0);
    HistoryLock::Holder holder;
    const auto lines = Text::lines(std::string_view(text.data(), size > 0 ? static_cast<std::size_t>(size) : 0));
    const auto line = [&](std::size_t at) {
        return at < lines.size() ? Text::repaired(lines[at].substr(0, longestLine)) : std::string();
    };
    holder.pid = std::max(0, Text::number<std::int32_t>(line(0)).value_or(0));
    holder.name = line(1);
    holder.note = line(2);
    return holder;
}

std::string reason(const std::string& path) {
    return path + ": " + std::generic_category().message(errno);
}

} // namespace

std::variant<HistoryLock, HistoryLock::Holder, HistoryLock::Problem> HistoryLock::take(const std::string& folder,
                                                                                       const std::string& name) {
    const std::string path = pathIn(folder);
    constexpr int attempts = 10; // a reader has the lock for a moment
    constexpr std::chrono::milliseconds moment{10};
    for (int attempt = 1;; ++attempt) {
        const int opened = openAt(path, O_RDWR | O_CREAT);
        if (opened < 0)
            return reason(path);
        HistoryLock candidate(opened, name); // closes the file where it is not handed on
        if (!isOrdinary(opened))
            return path + ": not an ordinary file";
        const bool locked = lock(opened, LOCK_EX);
        if (!locked && errno != EWOULDBLOCK)
            return reason(path);
        if (locked && isStillAt(path, opened)) {
            ::fchmod(opened, ownerOnly); // a mask may have taken more away, and a file from elsewhere may show more
            candidate.note({});          // in place of what an earlier holder left
            return candidate;
        }
        if (attempt == attempts)
            return locked ? Holder() : readFrom(opened);
        std::this_thread::sleep_for(moment);
    }
}

std::optional<HistoryLock::Holder> HistoryLock::holder(const std::string& folder) {
    const int opened = openAt(pathIn(folder), O_RDONLY);
    if (opened < 0)
        return std::nullopt;
    std::optional<Holder> found;
    // Only an attempt tells whether the lock is held. Shared, so that readers are not in each other's way; `take` waits
    // for it to pass.
    if (isOrdinary(opened) && !lock(opened, LOCK_SH) && errno == EWOULDBLOCK)
        found = readFrom(opened);
    ::close(opened);
    return found;
}

HistoryLock::HistoryLock(int opened, std::string program) : descriptor(opened), name(std::move(program)) {}

HistoryLock::HistoryLock(HistoryLock&& other) noexcept
    : descriptor(std::exchange(other.descriptor, -1)), name(std::move(other.name)) {}

HistoryLock::~HistoryLock() {
    if (descriptor >= 0)
        ::close(descriptor); // the file stays: another process may have it open to lock it next
}

void HistoryLock::note(const std::string& text) const {
    // In one piece, and cut off afterwards: a reader finds three whole lines at any moment.
    const std::string told = std::to_string(::getpid()) + '\n' + oneLine(name) + '\n' + oneLine(text) + '\n';
    const ssize_t size = ::pwrite(descriptor, told.data(), told.size(), 0);
    // On a full disk nothing may fit; the lock holds all the same.
    if (::ftruncate(descriptor, std::max<ssize_t>(size, 0)) != 0)
        return;
}

} // namespace ostrivane
