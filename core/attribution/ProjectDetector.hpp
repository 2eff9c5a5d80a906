#pragma once

#include "core/attribution/ProjectExclusions.hpp"
#include "core/attribution/ProjectFiles.hpp"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ostrivane {

/// Finds the root of the project that a working directory belongs to. May be asked from any thread.
///
/// What was found, and what was not, is kept until `invalidate`: the file system is not watched. An entry is a path of
/// at most 4 KiB, and there is one for each folder asked about, so the owner bounds the memory by calling `invalidate`
/// whenever projects are to be looked up anew; between two calls it grows with the working directories of the user's
/// development processes, and by at most 64 folders for the arguments of one process.
class ProjectDetector {
public:
    /// `home` is the user's folder; its own files make no project.
    ProjectDetector(std::string_view home, ProjectExclusions exclusions, ProjectFiles files = ProjectFiles::onDisk());

    /// The root for a process: that of its working directory, else that of the first script or file among its arguments
    /// that has one (`arguments` start with the program itself, which does not count). So a tool that was started from
    /// the user's folder still finds its project.
    std::optional<std::string> project(const std::optional<std::string>& cwd,
                                       const std::optional<std::vector<std::string>>& arguments);

    /// The root of the project that holds `path`; absent outside a project, at excluded places and for what is no
    /// absolute path. A project inside a repository counts for the repository when that is at most 4 folders up.
    std::optional<std::string> projectRoot(std::string_view path);

    /// What a root is called: its folder's name, but for names that are only a version or a hash that of its
    /// "package.json", else the name of the folder around it and its own. Reads that file each time.
    std::string displayName(std::string_view root) const;

    /// Forgets every answer; a search under way keeps its own to itself.
    void invalidate();

private:
    std::optional<std::string> search(std::string_view path) const;
    std::string_view repositoryAround(std::string_view directory) const;
    bool holdsXcodeProject(std::string_view directory) const;
    bool isExcluded(std::string_view path) const { return exclusions.excludes(path, home); }

    const std::string home; // without a slash at its end
    const ProjectExclusions exclusions;
    const ProjectFiles files;

    std::mutex lock; // guards what follows, and is never held while files are asked
    std::unordered_map<std::string, std::optional<std::string>> cache;
    std::uint64_t generation = 0; // of the cache: how often it was emptied
};

} // namespace ostrivane
