#pragma once

#include "core/sampling/platform/LocalFiles.hpp"
#include "core/sampling/platform/linux/MountTable.hpp"

namespace ostrivane {

/// The files of the running system, but for those that a tick could wait for without end: nothing lies there.
class LinuxFiles final : public Files {
public:
    /// `folder` outlives the object.
    explicit LinuxFiles(const RootFolder& folder) : mounts(folder) {}

    bool exists(const std::string& path) override { return !mounts.mayHang(path) && local.exists(path); }
    std::vector<std::string> list(const std::string& folder) override {
        return mounts.mayHang(folder) ? std::vector<std::string>() : local.list(folder);
    }
    std::optional<std::string> read(const std::string& path) override {
        return mounts.mayHang(path) ? std::nullopt : local.read(path);
    }

private:
    MountTable mounts;
    LocalFiles local;
};

} // namespace ostrivane
