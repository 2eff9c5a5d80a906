#pragma once

#include "core/sampling/platform/NetlinkDiag.hpp"
#include "core/sampling/platform/SocketOwners.hpp"
#include "core/sampling/platform/SocketTraffic.hpp"
#include "core/sampling/platform/Sockets.hpp"
#include "core/sampling/platform/linux/LinuxDescriptors.hpp"
#include "core/sampling/platform/linux/RootFolder.hpp"

#include <functional>
#include <optional>
#include <vector>

namespace ostrivane {

/// Sockets from the kernel's monitor, and their holders from /proc. What it counts is what TCP sockets of the user's
/// own processes moved in this network namespace, loopback too; no UDP, and nothing of a socket that was opened and
/// closed between two questions.
class LinuxSockets final : public Sockets {
public:
    using Dump = std::function<std::optional<std::vector<NetlinkDiag::Socket>>(NetlinkDiag::Transport)>;

    /// `folder` outlives the reader; `user` is the one whose processes may be looked into, 0 for all. Another `dump`
    /// than the running kernel's is for other machines.
    LinuxSockets(const RootFolder& folder, std::uint32_t user);
    LinuxSockets(const RootFolder& folder, std::uint32_t user, Dump dump);

    std::optional<PidMap<TrafficTotals>> traffic() override;

private:
    std::uint32_t userID;
    Dump dumped;
    LinuxDescriptors descriptors;
    SocketOwners owners{descriptors, SocketOwners::Limits{}};
    SocketTraffic counts;
};

} // namespace ostrivane
