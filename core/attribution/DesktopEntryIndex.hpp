#pragma once

#include "core/attribution/AppTables.hpp"
#include "core/attribution/BundleInfoCache.hpp"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

/// What building the index asks about files: of the running system, or of a tree that stands for another machine.
/// All paths are absolute.
struct DesktopFiles {
    std::function<std::optional<std::string>(const std::string& path)> read;
    std::function<std::vector<std::string>(const std::string& folder)> list; ///< names; empty when there is no folder
    std::function<bool(const std::string& path)> isFolder;
    /// Where an executable file lies once its links are followed; absent when there is none.
    std::function<std::optional<std::string>(const std::string& path)> realProgram;
};

/// Where a user's applications are, and what that user sees of them.
struct DesktopPlaces {
    std::vector<std::string> dataFolders;    ///< best first; "applications" and "dbus-1/services" lie in them
    std::vector<std::string> programFolders; ///< of PATH
    std::string home;
    std::vector<std::string> userFolders; ///< desktop, downloads and so on
    std::vector<std::string> desktops;    ///< names of the running desktop: "GNOME"
    std::vector<std::string> locales;     ///< best first: "de_DE.UTF-8"

    /// The data folders by the environment's XDG_DATA_HOME and XDG_DATA_DIRS, empty when unset, with those of flatpak
    /// and snap, which a session that began before their installation does not name.
    static std::vector<std::string> defaultDataFolders(std::string_view home, std::string_view dataHome,
                                                       std::string_view dataFolders);
};

/// The installed applications, by what a process shows of them. Immutable once built; building reads many files, so it
/// has no place on a tick.
class DesktopEntryIndex {
public:
    struct Bundle {
        std::string path; ///< of its desktop entry
        std::string id;   ///< "org.gnome.Terminal.desktop"; of "kde/a.desktop" it is "kde-a.desktop"
        std::string name; ///< in the user's language; may be empty
        std::string icon;
        bool noDisplay = false;
    };

    static DesktopEntryIndex build(const DesktopPlaces& places, const DesktopFiles& files,
                                   const DesktopTables& tables = desktopTables());

    /// The application whose program lies at `path`.
    const Bundle* bundleForProgram(std::string_view path) const;
    /// The same, and the one whose private folder holds `path`; of two folders the inner one.
    const Bundle* bundleForPath(std::string_view path) const;
    /// `id` without ".desktop", as units and sandboxes tell it: exact, else without regard to case.
    const Bundle* bundleForID(std::string_view id) const;
    /// The application with the entry at `path`.
    const Bundle* bundleAt(std::string_view path) const;

    /// Names and identifier for `BundleInfoCache`.
    BundleFacts facts(std::string_view path) const;

    const std::vector<Bundle>& bundles() const { return all; }

private:
    friend class DesktopEntryIndexBuilder;
    using Positions = std::map<std::string, std::size_t, std::less<>>; ///< in `all`

    const Bundle* find(const Positions& positions, std::string_view key) const;

    std::vector<Bundle> all;
    Positions byPath;
    Positions byID;
    Positions byLowerID;
    Positions byExe;
    Positions byFolder;
};

} // namespace ostrivane
