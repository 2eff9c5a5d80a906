#pragma once

#include "core/sampling/platform/NetlinkDiag.hpp"

#include <optional>
#include <vector>

/// The sockets of this network namespace, whoever owns them, as the kernel's socket monitor tells them.
namespace ostrivane::LinuxSocketDiag {

/// All of a kind over IPv4 and IPv6; one that is opened or closed meanwhile may be there or not. Absent when the kernel
/// has no monitor for the kind, and when its answer stays incomplete. Takes about a second at most.
std::optional<std::vector<NetlinkDiag::Socket>> sockets(NetlinkDiag::Transport transport);

} // namespace ostrivane::LinuxSocketDiag
