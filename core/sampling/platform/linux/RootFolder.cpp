#include "core/sampling/platform/linux/RootFolder.hpp"

#include <cerrno>
#include <climits>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace ostrivane {

namespace {

/// `openat` would leave the root for a path that begins with "/".
const char* relative(const std::string& path) {
    const std::size_t start = path.find_first_not_of('/');
    return start == std::string::npos ? "." : path.c_str() + start;
}

FileDescriptor opened(int folder, const char* path, int flags) {
    int descriptor;
    do
        descriptor = ::openat(folder, path, O_RDONLY | O_CLOEXEC | flags);
    while (descriptor < 0 && errno == EINTR);
    return FileDescriptor(descriptor);
}

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

} // namespace

RootFolder::RootFolder(const std::filesystem::path& path)
    : runningSystem(path == "/"), root(opened(AT_FDCWD, path.c_str(), O_DIRECTORY)) {}

FileDescriptor RootFolder::open(const std::string& path) const {
    // Without it a named pipe in a foreign tree would hold the reader until someone writes.
    return opened(root.get(), relative(path), O_NONBLOCK);
}

FileDescriptor RootFolder::openFolder(const std::string& path) const {
    return opened(root.get(), relative(path), O_DIRECTORY);
}

std::optional<std::string> RootFolder::read(const std::string& path) const {
    const FileDescriptor file = open(path);
    std::string text;
    const auto whole = file.isOpen() ? file.readAll(text) : std::nullopt;
    if (!whole)
        return std::nullopt;
    text.resize(whole->size());
    return text;
}

std::vector<std::string> RootFolder::list(const std::string& path) const {
    std::vector<std::string> names;
    FileDescriptor descriptor = openFolder(path);
    if (!descriptor.isOpen())
        return names;
    const std::unique_ptr<DIR, CloseFolder> folder(::fdopendir(descriptor.get()));
    if (!folder)
        return names;
    descriptor.release(); // the folder closes it
    while (const dirent* entry = ::readdir(folder.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    return names;
}

std::optional<std::string> RootFolder::link(const std::string& path) const {
    std::string text(PATH_MAX, '\0');
    const ssize_t size = ::readlinkat(root.get(), relative(path), text.data(), text.size());
    if (size < 0)
        return std::nullopt;
    text.resize(static_cast<std::size_t>(size));
    return text;
}

bool RootFolder::exists(const std::string& path) const {
    return ::faccessat(root.get(), relative(path), F_OK, 0) == 0;
}

} // namespace ostrivane
