#include "core/attribution/PathText.hpp"

#include <filesystem>

namespace ostrivane::PathText {

namespace {

constexpr std::size_t longestPath = 4096; // PATH_MAX of Linux; macOS stops at 1024

/// `path` without slashes at its end; "/" stays.
std::string_view withoutSlashes(std::string_view path) {
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

} // namespace

std::string_view lastComponent(std::string_view path) {
    path = withoutSlashes(path);
    return path == "/" ? path : path.substr(path.rfind('/') + 1);
}

std::string_view parent(std::string_view path) {
    path = withoutSlashes(path);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return {};
    return withoutSlashes(path.substr(0, slash + 1));
}

std::optional<std::string> normalised(std::string_view path) {
    if (!path.starts_with('/') || path.size() > longestPath || path.find('\0') != std::string_view::npos)
        return std::nullopt;
    const std::string normal = std::filesystem::path(path).lexically_normal().string();
    return std::string(withoutSlashes(normal));
}

} // namespace ostrivane::PathText
