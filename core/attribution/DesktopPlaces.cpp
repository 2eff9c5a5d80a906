#include "core/attribution/DesktopPlaces.hpp"

#include "core/attribution/PathText.hpp"
#include "core/model/Text.hpp"

#include <algorithm>

namespace ostrivane {

namespace {

/// What stands between colons, empty parts left out.
std::vector<std::string> parts(std::string_view list) {
    std::vector<std::string> found;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(':'), list.size());
        if (end > 0)
            found.emplace_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return found;
}

/// Adds `folder` unless it is there already. A relative one would mean another place in every program.
void addFolder(std::vector<std::string>& folders, std::string_view folder) {
    auto path = PathText::normalised(folder);
    if (path && std::find(folders.begin(), folders.end(), *path) == folders.end())
        folders.push_back(*std::move(path));
}

/// The folder that a variable sets for the user's files of one kind, else the usual one below home.
std::string personalFolder(std::string_view set, std::string_view home, std::string_view usual) {
    if (set.starts_with('/'))
        return std::string(set);
    return home.empty() ? std::string() : std::string(home) + std::string(usual);
}

bool isUntranslated(std::string_view locale) {
    return locale == "C" || locale.starts_with("C.") || locale == "POSIX";
}

/// The languages in gettext's order: LANGUAGE is a wish about translations, and none where there are no translations.
std::vector<std::string> localesOf(const DesktopPlaces::Environment& environment) {
    std::string locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (locale.empty())
            locale = environment(name);
    if (locale.empty() || isUntranslated(locale))
        return {};
    std::vector<std::string> wished = parts(environment("LANGUAGE"));
    if (wished.empty())
        return {locale};
    wished.erase(std::find_if(wished.begin(), wished.end(), isUntranslated), wished.end());
    return wished;
}

/// The value of a line `XDG_DOWNLOAD_DIR="$HOME/Downloads"`, which the shell could read; empty for any other line.
std::string userFolder(std::string_view line, std::string_view home) {
    line = Text::trimmed(line);
    const std::size_t equals = line.find('=');
    const std::string_view name = Text::trimmed(line.substr(0, equals));
    if (equals == std::string_view::npos || !name.starts_with("XDG_") || !name.ends_with("_DIR"))
        return {};
    std::string_view value = Text::trimmed(line.substr(equals + 1));
    if (value.size() < 2 || value.front() != '"' || value.back() != '"')
        return {};
    value = value.substr(1, value.size() - 2);
    constexpr std::string_view belowHome = "$HOME/";
    std::string path;
    if (value.starts_with(belowHome)) {
        if (home.empty())
            return {};
        path = std::string(home) + '/';
        value.remove_prefix(belowHome.size());
    }
    for (std::size_t at = 0; at < value.size(); ++at) {
        if (value[at] == '\\' && at + 1 < value.size()) // "\$", "\"" and the like
            ++at;
        path += value[at];
    }
    return path;
}

std::vector<std::string> userFoldersIn(std::string_view text, std::string_view home) {
    std::vector<std::string> folders;
    for (const std::string_view line : Text::lines(text))
        addFolder(folders, userFolder(line, home));
    return folders;
}

} // namespace

DesktopPlaces DesktopPlaces::ofSession(const Environment& environment, const ReadFile& read) {
    DesktopPlaces places;
    places.home = PathText::normalised(environment("HOME")).value_or("");
    places.dataFolders = defaultDataFolders(places.home, environment("XDG_DATA_HOME"), environment("XDG_DATA_DIRS"));
    const std::string path = environment("PATH");
    for (const std::string& folder : parts(path.empty() ? "/usr/local/bin:/usr/bin:/bin" : path))
        addFolder(places.programFolders, folder);
    const std::string config = personalFolder(environment("XDG_CONFIG_HOME"), places.home, "/.config");
    if (const auto text = config.empty() ? std::nullopt : read(config + "/user-dirs.dirs"))
        places.userFolders = userFoldersIn(*text, places.home);
    places.desktops = parts(environment("XDG_CURRENT_DESKTOP"));
    places.locales = localesOf(environment);
    return places;
}

std::vector<std::string> DesktopPlaces::defaultDataFolders(std::string_view home, std::string_view dataHome,
                                                           std::string_view dataFolders) {
    const std::string personal = personalFolder(dataHome, home, "/.local/share");
    std::vector<std::string> folders;
    addFolder(folders, personal);
    for (const std::string& folder : parts(dataFolders.empty() ? "/usr/local/share:/usr/share" : dataFolders))
        addFolder(folders, folder);
    if (!personal.empty())
        addFolder(folders, personal + "/flatpak/exports/share");
    addFolder(folders, "/var/lib/flatpak/exports/share");
    addFolder(folders, "/var/lib/snapd/desktop");
    return folders;
}

} // namespace ostrivane
