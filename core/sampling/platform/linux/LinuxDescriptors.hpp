#pragma once

#include "core/sampling/platform/SocketOwners.hpp"
#include "core/sampling/platform/linux/FolderStream.hpp"
#include "core/sampling/platform/linux/RootFolder.hpp"

#include <string>

namespace ostrivane {

/// Processes and their descriptors from /proc.
class LinuxDescriptors final : public DescriptorSource {
public:
    /// `folder` outlives the reader.
    explicit LinuxDescriptors(const RootFolder& folder) : root(folder), proc(folder.openFolder("proc").release()) {}

    std::vector<std::int32_t> pids() override;
    std::optional<std::uint64_t> startOf(std::int32_t pid) override;
    std::unique_ptr<Descriptors> open(std::int32_t pid) override;

private:
    const RootFolder& root;
    FolderStream proc;
    std::string buffer;
};

} // namespace ostrivane
