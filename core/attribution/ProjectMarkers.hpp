#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

/// What makes a folder a software project: files that tools expect directly in its root.
namespace ostrivane::ProjectMarkers {

inline constexpr std::array<std::string_view, 20> names{
    ".git",     "package.json", "Cargo.toml",       "go.mod",    "pyproject.toml",     "composer.json", "Gemfile",
    "pom.xml",  "build.gradle", "build.gradle.kts", "deno.json", "requirements.txt",   "mix.exs",       "Package.swift",
    "setup.py", "Pipfile",      "artisan",          "manage.py", "docker-compose.yml", "compose.yaml",
};

/// A marker stands directly in `directory`; asked in order, up to the first that does.
bool contains(std::string_view directory);

/// The same with the existence test of the caller.
bool contains(std::string_view directory, const std::function<bool(const std::string&)>& fileExists);

} // namespace ostrivane::ProjectMarkers
