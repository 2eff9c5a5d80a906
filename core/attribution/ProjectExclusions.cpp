#include "core/attribution/ProjectExclusions.hpp"

#include <algorithm>
#include <array>

namespace ostrivane {

namespace {

template <class... Texts>
constexpr std::array<std::string_view, sizeof...(Texts)> texts(Texts... all) {
    return {all...};
}

constexpr auto macLocations = texts("/System", "/usr", "/bin", "/sbin", "/private", "/Library", "/Applications",
                                    "/opt/homebrew", "/Volumes/Recovery");
constexpr auto macBelowHome =
    texts("/Library", "/.Trash", "/.npm", "/.cache", "/.bun", "/.cargo", "/.rustup", "/.pyenv", "/.nvm", "/.local",
          "/.gradle", "/.m2", "/.vscode", "/.cursor", "/.docker", "/.orbstack");
constexpr auto macPassedArguments = texts("/usr", "/opt", "/System");

constexpr auto linuxLocations =
    texts("/usr", "/bin", "/sbin", "/lib", "/lib64", "/etc", "/opt", "/snap", "/nix", "/run", "/boot", "/proc", "/sys",
          "/dev", "/tmp", "/var/lib", "/var/cache", "/var/tmp", "/var/log");
constexpr auto linuxBelowHome =
    texts("/.local", "/.config", "/.cache", "/.var", "/.npm", "/.bun", "/.cargo", "/.rustup", "/.pyenv", "/.nvm",
          "/.gradle", "/.m2", "/.vscode", "/.vscode-server", "/.cursor", "/.docker", "/.mozilla", "/snap");
// With the slash: "/app" is where a sandbox mounts its program, "/apps" a folder that servers keep projects in.
constexpr auto linuxPassedArguments = texts("/usr/", "/opt/", "/snap/", "/nix/", "/app/");

bool isAtOrUnder(std::string_view path, std::string_view location) {
    return path.starts_with(location) && (path.size() == location.size() || path[location.size()] == '/');
}

} // namespace

constexpr ProjectExclusions ProjectExclusions::onMacOS{macLocations, macBelowHome, macPassedArguments};
constexpr ProjectExclusions ProjectExclusions::onLinux{linuxLocations, linuxBelowHome, linuxPassedArguments};

bool ProjectExclusions::excludes(std::string_view path, std::string_view home) const {
    const auto holdsPath = [](std::string_view inside) {
        return [inside](std::string_view location) { return isAtOrUnder(inside, location); };
    };
    if (path == "/" || path == home)
        return true;
    if (std::any_of(locations.begin(), locations.end(), holdsPath(path)))
        return true;
    return path.starts_with(home) &&
           std::any_of(belowHome.begin(), belowHome.end(), holdsPath(path.substr(home.size())));
}

bool ProjectExclusions::passesOver(std::string_view argument) const {
    return std::any_of(passedArguments.begin(), passedArguments.end(),
                       [&](std::string_view beginning) { return argument.starts_with(beginning); });
}

} // namespace ostrivane
