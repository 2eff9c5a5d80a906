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

/// One kind of folder: what names it, and where it lies otherwise.
struct Custom {
    const char* chosen; ///< a variable that names the folder itself
    const char* base;   ///< one that names the folder above it, on Linux
    std::string_view belowHome;
    std::string_view belowHomeOnMac;
};
constexpr Custom dataCustom{"OSTRIVANE_DATA_DIR", "XDG_DATA_HOME", "/.local/share/ostrivane",
                            "/Library/Application Support/Ostrivane"};
constexpr Custom configCustom{"OSTRIVANE_CONFIG_DIR", "XDG_CONFIG_HOME", "/.config/ostrivane",
                              "/Library/Application Support/Ostrivane"};

std::optional<std::string> directory(const Custom& custom, Platform platform, const Environment& environment,
                                     std::string_view home) {
    if (const std::string chosen = environment(custom.chosen); !chosen.empty())
        return PathText::normalised(chosen);
    const auto below = [](const std::optional<std::string>& folder, std::string_view rest) {
        return folder ? PathText::normalised(*folder + std::string(rest)) : std::nullopt;
    };
    const auto ownHome = PathText::normalised(home);
    if (platform == Platform::macOS)
        return below(ownHome, custom.belowHomeOnMac);
    if (const auto base = PathText::normalised(environment(custom.base)))
        return below(base, "/ostrivane");
    return below(ownHome, custom.belowHome);
}

std::string ownEnvironment(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value ? value : "";
}

} // namespace

std::optional<std::string> dataDirectory(Platform platform, const Environment& environment, std::string_view home) {
    return directory(dataCustom, platform, environment, home);
}

std::optional<std::string> dataDirectory() {
    return dataDirectory(nativePlatform(), ownEnvironment, homeFolder());
}

std::optional<std::string> configDirectory(Platform platform, const Environment& environment, std::string_view home) {
    return directory(configCustom, platform, environment, home);
}

std::optional<std::string> configDirectory() {
    return configDirectory(nativePlatform(), ownEnvironment, homeFolder());
}

bool isConfigDirectoryChosen() {
    return !ownEnvironment(configCustom.chosen).empty();
}

std::optional<std::string> makeDirectory(const std::string& path) {
    if (const int error = makeFolder(path))
        return path + ": " + std::generic_category().message(error);
    return std::nullopt;
}

} // namespace ostrivane::UserFolders
