#pragma once

#include "core/sampling/platform/Platform.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// Where the program keeps what is the user's.
namespace ostrivane::UserFolders {

/// The value of a variable of the environment; empty when it is not set.
using Environment = std::function<std::string(const std::string& name)>;

constexpr std::string_view historyFile = "history.sqlite"; ///< in the data folder

/// The folder of the program's lasting data: what OSTRIVANE_DATA_DIR names, else the platform's usual place. Absent
/// when nothing names a full path, and when OSTRIVANE_DATA_DIR names another one: a relative path would be another
/// folder for each program that asks, and the usual place is not what was asked for. A relative XDG_DATA_HOME is passed
/// over.
std::optional<std::string> dataDirectory(Platform platform, const Environment& environment, std::string_view home);

/// The one of the user who runs this process. Nothing need lie there.
std::optional<std::string> dataDirectory();

/// The folder of the program's settings, by the same rules: what OSTRIVANE_CONFIG_DIR names, else the platform's usual
/// place, which is below XDG_CONFIG_HOME.
std::optional<std::string> configDirectory(Platform platform, const Environment& environment, std::string_view home);

/// The one of the user who runs this process.
std::optional<std::string> configDirectory();

/// Whether OSTRIVANE_CONFIG_DIR names any folder, good or bad.
bool isConfigDirectoryChosen();

/// Makes the folder and those above it that are missing, for the user alone, whatever the process's mask says. A folder
/// that is there stays as it is. Answers why it could not, in the user's words; absent when it is there now.
std::optional<std::string> makeDirectory(const std::string& path);

} // namespace ostrivane::UserFolders
