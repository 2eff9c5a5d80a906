#include "core/model/WholeFile.hpp"

#include <fmt/format.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrivane::WholeFile {

namespace {

namespace fs = std::filesystem;

constexpr mode_t permissions = 0777;

/// 0, or the error's number.
int writeAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return written < 0 ? errno : ENOSPC;
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

/// Closes too: some file systems tell of a full disk only then.
int closeAfter(int descriptor, int error) {
    const int closing = ::close(descriptor) == 0 ? 0 : errno;
    return error != 0 ? error : closing;
}

int writeInto(const std::string& path, std::string_view content) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    return descriptor < 0 ? errno : closeAfter(descriptor, writeAll(descriptor, content));
}

/// A new file in `folder` under a name that none has; its descriptor, or -1.
int create(const fs::path& folder, mode_t mode, std::string& name) {
    for (int attempt = 0;; ++attempt) {
        name = (folder / fmt::format(".ostrivane-{}-{}", ::getpid(), attempt)).string();
        const int descriptor = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (descriptor >= 0 || errno != EEXIST)
            return descriptor;
    }
}

/// A name is lasting only when its folder is written too. Not every file system can do that; the file is whole anyway.
void syncFolder(const fs::path& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

/// @param kept  permissions of the file that is there; absent without one
int replace(const fs::path& target, std::string_view content, mode_t mode, std::optional<mode_t> kept) {
    const fs::path folder = target.has_parent_path() ? target.parent_path() : ".";
    std::string made;
    const int descriptor = create(folder, kept.value_or(mode), made);
    if (descriptor < 0)
        return errno;
    int error = kept && ::fchmod(descriptor, *kept) != 0 ? errno : 0;
    if (error == 0)
        error = writeAll(descriptor, content);
    if (error == 0 && ::fsync(descriptor) != 0)
        error = errno;
    error = closeAfter(descriptor, error);
    if (error == 0 && ::rename(made.c_str(), target.c_str()) != 0)
        error = errno;
    if (error != 0)
        ::unlink(made.c_str());
    else
        syncFolder(folder);
    return error;
}

int writeTo(const std::string& path, std::string_view content, mode_t mode) {
    struct stat there {};
    if (::stat(path.c_str(), &there) != 0) {
        if (errno != ENOENT)
            return errno;
        const bool isDanglingLink = ::lstat(path.c_str(), &there) == 0;
        return isDanglingLink ? ENOENT : replace(path, content, mode, std::nullopt);
    }
    if (S_ISCHR(there.st_mode) || S_ISFIFO(there.st_mode))
        return writeInto(path, content);
    if (S_ISDIR(there.st_mode))
        return EISDIR;
    if (!S_ISREG(there.st_mode))
        return EINVAL;
    if (::access(path.c_str(), W_OK) != 0) // the folder alone would allow it
        return errno;
    std::error_code error;
    const fs::path target = fs::canonical(path, error);
    return error ? error.value() : replace(target, content, mode, there.st_mode & permissions);
}

} // namespace

std::optional<std::string> write(const std::string& path, std::string_view content, mode_t mode) {
    const int error = writeTo(path, content, mode);
    if (error == 0)
        return std::nullopt;
    return fmt::format("{}: {}", path, std::generic_category().message(error));
}

} // namespace ostrivane::WholeFile
