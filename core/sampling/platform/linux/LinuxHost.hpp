#pragma once

#include "core/sampling/platform/Host.hpp"
#include "core/sampling/platform/linux/RootFolder.hpp"

namespace ostrivane {

/// The machine as its files and the running system tell about it.
class LinuxHost final : public Host {
public:
    /// `folder` must outlive the host.
    explicit LinuxHost(const RootFolder& folder) : root(folder) {}

    HostInfo info() override;
    std::optional<double> uptime() override;

private:
    const RootFolder& root;
};

} // namespace ostrivane
