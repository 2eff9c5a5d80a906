#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// What attribution asks of a machine's file system. Nothing here throws; a path is absolute.
class Files {
public:
    virtual ~Files() = default;

    /// Something lies at `path`; a link that leads nowhere does not exist.
    virtual bool exists(const std::string& path) = 0;
    /// The names in a folder; empty when it cannot be read.
    virtual std::vector<std::string> list(const std::string& folder) = 0;
    /// The whole of a small regular file; absent for any other.
    virtual std::optional<std::string> read(const std::string& path) = 0;
};

} // namespace ostrivane
