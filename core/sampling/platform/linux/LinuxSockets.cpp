#include "core/sampling/platform/linux/LinuxSockets.hpp"

#include "core/sampling/platform/linux/LinuxSocketDiag.hpp"

#include <utility>

namespace ostrivane {

LinuxSockets::LinuxSockets(const RootFolder& folder, std::uint32_t user)
    : LinuxSockets(folder, user, LinuxSocketDiag::sockets) {}

LinuxSockets::LinuxSockets(const RootFolder& folder, std::uint32_t user, Dump dump)
    : userID(user), dumped(std::move(dump)), descriptors(folder) {}

std::optional<PidMap<TrafficTotals>> LinuxSockets::traffic() {
    const auto sockets = dumped(NetlinkDiag::Transport::tcp);
    if (!sockets)
        return std::nullopt;
    SocketInodes wanted;
    for (const NetlinkDiag::Socket& socket : *sockets)
        if (socket.inode != 0 && (socket.uid == userID || userID == 0) &&
            socket.state != NetlinkDiag::State::listening) // moves nothing itself
            wanted.insert(socket.inode);
    return counts.update(*sockets, owners.refresh(wanted));
}

} // namespace ostrivane
