#pragma once

#include "core/sampling/platform/linux/RootFolder.hpp"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

/// Where a path lies. Read anew when it is older than some seconds.
class MountTable {
public:
    /// `folder` outlives the table.
    explicit MountTable(const RootFolder& folder) : root(folder) {}

    /// What lies at `path` is answered by a program or over a network: whoever asks for it may wait for ever. True too
    /// where nothing tells. `path` is absolute; links in it are not followed.
    bool mayHang(std::string_view path);

private:
    struct Mount {
        std::string point;
        bool mayHang = false;
    };

    void refresh();

    const RootFolder& root;
    std::vector<Mount> mounts; ///< in the order of mounting: of two at one place the later one is seen
    std::optional<std::chrono::steady_clock::time_point> readAt;
};

} // namespace ostrivane
