#pragma once

#include <span>
#include <string_view>

namespace ostrivane {

/// Where no project is looked for: places that hold installed programs, caches and the system's own files. Views of
/// tables that outlive it.
struct ProjectExclusions {
    std::span<const std::string_view> locations;       ///< absolute; each with all that lies under it
    std::span<const std::string_view> belowHome;       ///< the same below the user's folder, each starting with "/"
    std::span<const std::string_view> passedArguments; ///< beginnings of arguments that lead to no project

    /// `path` and `home` are normalised; the home of a user who lives in "/" is empty.
    bool excludes(std::string_view path, std::string_view home) const;
    bool passesOver(std::string_view argument) const;

    static const ProjectExclusions onMacOS;
    static const ProjectExclusions onLinux;
};

} // namespace ostrivane
