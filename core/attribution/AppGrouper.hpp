#pragma once

#include "core/attribution/AppTables.hpp"
#include "core/attribution/ControlGroupUnit.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

struct AppRules;

/// Gives every process the key of the application that owns it: the path of an application bundle, "exe:" and the name
/// of an executable, or "system". A bundle is a folder "….app" on macOS, an installed desktop entry or an AppImage on
/// Linux.
///
/// Most of the work depends on the process alone and is done once in its life (`ownKeys`). What changes from tick to
/// tick is who stands beside it (`assign`).
namespace AppGrouper {

constexpr std::string_view systemKey = "system";
constexpr std::string_view executablePrefix = "exe:";

/// What is known about one process.
struct Input {
    std::int32_t pid = 0;
    std::int32_t ppid = 0;
    std::int32_t responsiblePID = 0; ///< whom the system holds responsible, on Linux `unitLeaders`; else `pid` itself
    std::string name;                ///< command name, as the system cut it
    std::optional<std::string> path; ///< executable; absent when the system hides it

    // Linux alone from here on; on macOS the defaults stand.
    ControlGroupUnit unit;
    bool isOwn = false;                       ///< of the user who runs the program
    bool hasTerminal = false;                 ///< controlled by a terminal
    bool isKernelThread = false;              ///< no program of its own
    bool foreignRoot = false;                 ///< sees other mounts: `path` names nothing here
    std::optional<std::string> flatpakID;     ///< by its sandbox's own notes, where the unit does not tell
    std::optional<std::string> appImage;      ///< the AppImage file that it was mounted from
    std::optional<std::string> firstArgument; ///< Wine's loader: the Windows program
};

/// What a process says by itself. Holds as long as its facts and the installed applications do.
struct OwnKeys {
    std::string application;   ///< bundle or sandbox that it belongs to; empty: none known
    std::string unitEntry;     ///< bundle that its unit names; empty: none
    std::string name;          ///< what it ends as when nobody owns it; never empty
    bool neverOwns = false;    ///< starts everything, and owns nothing that it starts
    bool endsAncestry = false; ///< whoever stands above it has nothing to do with those below
};

/// A process on one tick.
struct Process {
    std::int32_t pid = 0;
    std::int32_t ppid = 0;
    std::int32_t responsiblePID = 0;
    const OwnKeys* own = nullptr; ///< never null
};

OwnKeys ownKeys(const Input& input, const AppRules& rules);

/// The key of each process, in the order of `processes`; the views point into their `own`.
std::vector<std::string_view> assign(const std::vector<Process>& processes, const AppRules& rules);

/// On macOS: the outermost application bundle that holds `path`. Asks `exists` only for a program that runs from a copy
/// which the system made, to find the original.
std::optional<std::string> outermostAppBundle(std::string_view path,
                                              const std::function<bool(const std::string& path)>& exists,
                                              std::string_view home);

/// `path` belongs to the system. So does an absent one: what the system protects shows no path.
bool isSystemPath(std::optional<std::string_view> path, const AppTables& tables);

} // namespace AppGrouper
} // namespace ostrivane
