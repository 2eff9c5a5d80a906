#include "app/model/FileKeyValueStore.hpp"

#include "app/model/SettingsText.hpp"
#include "core/model/JSON.hpp"
#include "core/model/Text.hpp"
#include "core/model/WholeFile.hpp"
#include "core/sampling/platform/UserFolders.hpp"

#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <cmath>
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
constexpr std::string_view noFolder =
    "no folder for the settings: OSTRIVANE_CONFIG_DIR, or HOME without it, must be a full path";

std::string reason(const std::string& path, int error) {
    return fmt::format("{}: {}", path, std::generic_category().message(error));
}

std::string tooLarge(const std::string& path) {
    return path + ": too large for a file of settings";
}

/// A file or folder that is open as long as this lives.
struct Opened {
    Opened(const std::string& path, int flags) : descriptor(::open(path.c_str(), flags | O_CLOEXEC)) {}
    ~Opened() {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;

    int descriptor;
};

/// Waits a moment for other programs that change a file in the folder, and keeps them out as long as it is open.
/// Answers why it could not. On file systems without such locks it goes without: a choice that two programs make at
/// the same instant is a lesser evil than none.
std::optional<std::string> lock(const std::string& folder, const Opened& opened) {
    if (opened.descriptor < 0)
        return reason(folder, errno);
    constexpr int attempts = 100;
    constexpr std::chrono::milliseconds pause{10};
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (::flock(opened.descriptor, LOCK_EX | LOCK_NB) == 0 || (errno != EWOULDBLOCK && errno != EINTR))
            return std::nullopt;
        std::this_thread::sleep_for(pause);
    }
    return folder + ": another program is changing the settings";
}

} // namespace

struct FileKeyValueStore::Content {
    std::string text;
    Stamp stamp;
    std::optional<std::string> problem;
};

template <class Status>
FileKeyValueStore::Stamp FileKeyValueStore::stampOf(const Status& status) {
    const auto whole = [](auto number) { return static_cast<std::uint64_t>(number); };
    const auto stamp = [&](const timespec& modified, const timespec& changed) {
        return Stamp{whole(status.st_dev), whole(status.st_ino), whole(status.st_size), modified.tv_sec,
                     modified.tv_nsec,     changed.tv_sec,       changed.tv_nsec};
    };
    if constexpr (requires { status.st_mtim; })
        return stamp(status.st_mtim, status.st_ctim);
    else // the older names
        return stamp(status.st_mtimespec, status.st_ctimespec);
}

FileKeyValueStore::Content FileKeyValueStore::read(const std::string& path) {
    const Opened file(path, O_RDONLY | O_NONBLOCK | O_NOCTTY); // a pipe would wait for its other end
    if (file.descriptor < 0)
        return errno == ENOENT ? Content() : Content{.text = {}, .stamp = {}, .problem = reason(path, errno)};
    struct stat status {};
    if (::fstat(file.descriptor, &status) != 0)
        return {.text = {}, .stamp = {}, .problem = reason(path, errno)};
    Content content{.text = {}, .stamp = stampOf(status), .problem = {}};
    if (S_ISDIR(status.st_mode))
        content.problem = reason(path, EISDIR);
    else if (!S_ISREG(status.st_mode))
        content.problem = path + ": not an ordinary file";
    for (std::string piece(16384, '\0'); !content.problem;) {
        const ssize_t count = ::read(file.descriptor, piece.data(), piece.size());
        if (count == 0)
            break;
        if (count > 0)
            content.text.append(piece, 0, static_cast<std::size_t>(count));
        else if (errno != EINTR)
            content.problem = reason(path, errno);
        if (content.text.size() > SettingsText::largest)
            content.problem = tooLarge(path);
    }
    return content;
}

FileKeyValueStore::FileKeyValueStore(const std::optional<std::string>& directory)
    : folder(directory.value_or("")), path(directory ? *directory + "/settings.ini" : "nowhere") {
    reload();
}

const std::string* FileKeyValueStore::written(std::string_view key) const {
    const auto found = values.find(key);
    return found == values.end() || found->second.empty() ? nullptr : &found->second;
}

template <class Value>
std::optional<Value> FileKeyValueStore::as(std::string_view key) const {
    const std::string* value = written(key);
    const auto document = value ? JSON::parse(*value) : std::nullopt;
    return document ? JSON::read<Value>(*document) : std::nullopt;
}

std::optional<bool> FileKeyValueStore::boolean(std::string_view key) const {
    return as<bool>(key);
}

std::optional<double> FileKeyValueStore::number(std::string_view key) const {
    return as<double>(key);
}

std::optional<std::int64_t> FileKeyValueStore::integer(std::string_view key) const {
    return as<std::int64_t>(key);
}

std::optional<std::string> FileKeyValueStore::text(std::string_view key) const {
    const std::string* value = written(key);
    return value && !JSON::parse(*value) ? Text::repaired(*value) : as<std::string>(key);
}

std::optional<std::string> FileKeyValueStore::json(std::string_view key) const {
    const std::string* value = written(key);
    if (!value)
        return std::nullopt;
    return JSON::parse(*value) ? *value : JSON::text(*value);
}

void FileKeyValueStore::setBoolean(std::string_view key, bool value) {
    change(key, JSON::text(value));
}

void FileKeyValueStore::setNumber(std::string_view key, double value) {
    if (std::isfinite(value)) // nothing else can be written
        change(key, JSON::text(value));
}

void FileKeyValueStore::setInteger(std::string_view key, std::int64_t value) {
    change(key, JSON::text(value));
}

void FileKeyValueStore::setText(std::string_view key, std::string_view value) {
    change(key, JSON::text(value));
}

void FileKeyValueStore::setJSON(std::string_view key, std::string_view document) {
    change(key, std::string(document));
}

void FileKeyValueStore::remove(std::string_view key) {
    change(key, std::nullopt);
}

void FileKeyValueStore::together(const std::function<void()>& changes) {
    const bool isWithin = std::exchange(isGrouping, true);
    changes();
    isGrouping = isWithin;
    keepChanges();
}

std::vector<std::string> FileKeyValueStore::keys() const {
    std::vector<std::string> names;
    for (const auto& [name, value] : values)
        names.push_back(name);
    return names;
}

void FileKeyValueStore::reload() {
    if (folder.empty()) {
        unread = noFolder;
        return;
    }
    Content content = read(path);
    seen = content.stamp;
    unread = std::move(content.problem);
    if (unread)
        return; // what was known stands
    values.clear();
    for (const auto& [key, value] : SettingsText::values(content.text))
        values.emplace(key, value);
    for (const auto& [key, value] : unkept)
        if (value)
            values.insert_or_assign(key, *value);
        else
            values.erase(key);
}

std::function<bool()> FileKeyValueStore::watch() const {
    return [file = path, last = seen]() mutable {
        struct stat status {};
        const Stamp now = ::stat(file.c_str(), &status) == 0 ? stampOf(status) : Stamp();
        return std::exchange(last, now) != now;
    };
}

void FileKeyValueStore::change(std::string_view key, Change value) {
    if (value)
        values.insert_or_assign(std::string(key), *value);
    else
        values.erase(std::string(key));
    unkept.insert_or_assign(std::string(key), std::move(value));
    keepChanges();
}

void FileKeyValueStore::keepChanges() {
    if (isGrouping)
        return;
    unwritten = writeChanges();
    if (!unwritten) {
        unkept.clear();
        unread.reset();
    }
}

std::optional<std::string> FileKeyValueStore::writeChanges() const {
    if (folder.empty())
        return std::string(noFolder);
    if (auto problem = UserFolders::makeDirectory(folder))
        return problem;
    const Opened opened(folder, O_RDONLY | O_DIRECTORY);
    if (auto problem = lock(folder, opened))
        return problem;
    const Content content = read(path); // what others changed is in there
    if (content.problem)
        return content.problem;
    std::string text = content.text;
    for (const auto& [key, value] : unkept)
        text = value ? SettingsText::replaced(text, key, *value) : SettingsText::removed(text, key);
    if (text.size() > SettingsText::largest)
        return tooLarge(path);
    return text == content.text ? std::nullopt : WholeFile::write(path, text, ownerOnly);
}

} // namespace ostrivane
