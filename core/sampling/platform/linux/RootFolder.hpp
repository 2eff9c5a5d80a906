#pragma once

#include "core/sampling/platform/linux/FileDescriptor.hpp"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// The folder under which a machine's files lie: "/", or a tree of the same shape. Paths are relative to it
/// ("proc/stat"). Nothing here throws: what cannot be read is absent.
class RootFolder {
public:
    explicit RootFolder(const std::filesystem::path& path = "/");

    /// The root is "/": the files are those of the running system, and its calls may be asked too.
    bool isRunningSystem() const { return runningSystem; }

    /// The whole text of a file.
    std::optional<std::string> read(const std::string& path) const;

    /// The names in a folder, in no order, without "." and ".."; empty when it cannot be read.
    std::vector<std::string> list(const std::string& path) const;

    /// The text of a symbolic link.
    std::optional<std::string> link(const std::string& path) const;

    /// Something lies at `path`. Links are followed.
    bool exists(const std::string& path) const;

    /// A file for reading; not open when that fails.
    FileDescriptor open(const std::string& path) const;

    /// A folder, to be listed or to open files in; not open when that fails.
    FileDescriptor openFolder(const std::string& path) const;

private:
    bool runningSystem;
    FileDescriptor root;
};

} // namespace ostrivane
