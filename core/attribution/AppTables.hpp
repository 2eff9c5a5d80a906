#pragma once

#include <span>
#include <string_view>

namespace ostrivane {

/// Names, each of which may hold "*" for any run of characters.
using NamePatterns = std::span<const std::string_view>;

bool matchesAny(NamePatterns patterns, std::string_view name);

/// What grouping knows by name about a platform. Compiled everywhere, so that the rules of both are tested on either.
struct AppTables {
    std::string_view systemName;   ///< how the entry "system" is shown
    NamePatterns notableProcesses; ///< processes of the system worth an entry of their own
    NamePatterns systemFolders;    ///< with "/" behind
    NamePatterns userFolders;      ///< with "/" behind: parts of `systemFolders` that the user fills
    NamePatterns commandFolders;   ///< hold what the user starts by name beside what the system runs
    NamePatterns neverOwners;      ///< start everything, and own nothing that they start
    NamePatterns sessionManagers;  ///< where the search for an owner ends
    NamePatterns wineServices;     ///< programs of Wine that belong to no single Windows program
};

const AppTables& macOSAppTables();
const AppTables& linuxAppTables();

/// What the index of desktop entries knows by name.
struct DesktopTables {
    NamePatterns launchers;         ///< programs that run another: seeing them says nothing about the application
    NamePatterns privateParents;    ///< a folder in one of these belongs to one package
    NamePatterns wrappedIn;         ///< where a wrapper script of the name X keeps its folder X
    NamePatterns sharedFolders;     ///< names in `privateParents` that many packages share
    NamePatterns sharedHomeFolders; ///< the same, relative to the user's home
};

const DesktopTables& desktopTables();

} // namespace ostrivane
