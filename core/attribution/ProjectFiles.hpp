#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// What the search for a project asks of a file system. Called from several threads at once.
struct ProjectFiles {
    std::function<bool(const std::string&)> fileExists;                        ///< a folder is a file too
    std::function<std::vector<std::string>(const std::string&)> listDirectory; ///< names; empty when unreadable
    std::function<std::optional<std::string>(const std::string&)> readFile;    ///< absent when unreadable

    /// The files of this computer.
    static ProjectFiles onDisk();
};

/// The same operations on the files of this computer. None of them throws for what a file system answers.
namespace DiskFiles {

/// Follows links: one that leads nowhere does not exist.
bool exists(const std::string& path);

/// At most 10,000 names: what is looked for stands in a folder made by hand, not in a heap of data.
std::vector<std::string> list(const std::string& directory);

/// A regular file of at most 1 MiB, whole; absent for any other, for a pipe would make the reader wait.
std::optional<std::string> read(const std::string& path);

} // namespace DiskFiles

} // namespace ostrivane
