#pragma once

#include "core/attribution/AppTables.hpp"
#include "core/attribution/DesktopPlaces.hpp"
#include "core/attribution/InstalledApplication.hpp"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// What is asked about files to find the installed applications: of the running system, or of a tree that stands for
/// another machine. All paths are absolute.
struct DesktopFiles {
    std::function<std::optional<std::string>(const std::string& path)> read;
    std::function<std::vector<std::string>(const std::string& folder)> list; ///< names; empty when there is no folder
    std::function<bool(const std::string& path)> isFolder;
    /// Where an executable file lies once its links are followed; absent when there is none.
    std::function<std::optional<std::string>(const std::string& path)> realProgram;
};

/// The applications that the desktop entries in `places` describe, each with the programs and folders that no other has
/// a better right to. Many files are read, so it has no place on a tick.
InstalledApplications readInstalledApplications(const DesktopPlaces& places, const DesktopFiles& files,
                                                const DesktopTables& tables = desktopTables());

} // namespace ostrivane
