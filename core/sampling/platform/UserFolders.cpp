#include "core/sampling/platform/UserFolders.hpp"

#include "core/attribution/PathText.hpp"
#include "core/sampling/platform/NativeMachine.hpp"
#include "core/sampling/platform/UserNames.hpp"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <sys/stat.h>

namespace ostrivane::UserFolders {

namespace {

constexpr mode_t ownerOnly = 0700;

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// An error number; 0 when the folder is there now.
int makeFolder(const std::string& path) {
    if (isFolder(path))
        return 0;
    if (const std::string_view above = PathText::parent(path); !above.empty() && above != path)
        if (const int error = makeFolder(std::string(above)))
            return error;
    if (::mkdir(path.c_str(), ownerOnly) == 0)
        return ::chmod(path.c_str(), ownerOnly) == 0 ? 0 : errno; // a mask may have taken more away
    if (errno != EEXIST)
        return errno;
    return isFolder(path) ? 0 : ENOTDIR; // another process may have been quicker
}

} // namespace

std::optional<std::string> dataDirectory(Platform platform, const Environment& environment, std::string_view home) {
    if (const std::string chosen = environment("OSTRIVANE_DATA_DIR"); !chosen.empty())
        return PathText::normalised(chosen);
    const auto ownHome = PathText::normalised(home);
    const auto below = [](const std::optional<std::string>& folder, std::string_view rest) {
        return folder ? PathText::normalised(*folder + std::string(rest)) : std::nullopt;
    };
    if (platform == Platform::macOS)
        return below(ownHome, "/Library/Application Support/Ostrivane");
    if (const auto data = PathText::normalised(environment("XDG_DATA_HOME")))
        return below(data, "/ostrivane");
    return below(ownHome, "/.local/share/ostrivane");
}

std::optional<std::string> dataDirectory() {
    const auto environment = [](const std::string& name) {
        const char* value = std::getenv(name.c_str());
        return std::string(value ? value : "");
    };
    return dataDirectory(nativePlatform(), environment, homeFolder());
}

std::optional<std::string> makeDataDirectory(const std::string& path) {
    if (const int error = makeFolder(path))
        return path + ": " + std::generic_category().message(error);
    return std::nullopt;
}

} // namespace ostrivane::UserFolders
