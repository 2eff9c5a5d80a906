#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Paths taken as text: nothing here asks a file system, so links stay what they are.
namespace ostrivane::PathText {

/// What stands behind the last "/", slashes at the end aside; "/" for the root, empty for an empty path.
std::string_view lastComponent(std::string_view path);

/// The folder that holds `path`, slashes at the end aside; "/" for the root, empty where nothing stands above. The view
/// points into `path`.
std::string_view parent(std::string_view path);

/// `name` without its last ".…"; whole when the dot is its first character.
constexpr std::string_view withoutExtension(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? name : name.substr(0, dot);
}

/// `path` lies somewhere below `folder`, and is not `folder` itself.
constexpr bool isBelow(std::string_view path, std::string_view folder) {
    return path.size() > folder.size() + 1 && path.starts_with(folder) && path[folder.size()] == '/';
}

/// An absolute path without ".", "..", doubled slashes and a slash at the end. Absent for a path that names no place:
/// relative or empty, with a zero byte, or longer than systems open.
std::optional<std::string> normalised(std::string_view path);

} // namespace ostrivane::PathText
