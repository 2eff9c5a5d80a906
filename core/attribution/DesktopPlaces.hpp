#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

/// Where a user's applications are, and what that user sees of them.
struct DesktopPlaces {
    /// The value of a variable of the environment; empty when it is not set.
    using Environment = std::function<std::string(const std::string& name)>;
    /// The text of a file; absent when it cannot be read.
    using ReadFile = std::function<std::optional<std::string>(const std::string& path)>;

    std::vector<std::string> dataFolders;    ///< best first; "applications" and "dbus-1/services" lie in them
    std::vector<std::string> programFolders; ///< of PATH
    std::string home;
    std::vector<std::string> userFolders; ///< desktop, downloads and so on
    std::vector<std::string> desktops;    ///< names of the running desktop: "GNOME"
    std::vector<std::string> locales;     ///< best first: "de_DE.UTF-8"

    /// Those of a session, as its environment and the user's list of folders tell them.
    static DesktopPlaces ofSession(const Environment& environment, const ReadFile& read);

    /// The data folders by the environment's XDG_DATA_HOME and XDG_DATA_DIRS, empty when unset, with those of flatpak
    /// and snap, which a session that began before their installation does not name.
    static std::vector<std::string> defaultDataFolders(std::string_view home, std::string_view dataHome,
                                                       std::string_view dataFolders);
};

} // namespace ostrivane
