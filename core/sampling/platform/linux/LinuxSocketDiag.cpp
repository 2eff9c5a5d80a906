#include "core/sampling/platform/linux/LinuxSocketDiag.hpp"

#include "core/sampling/platform/linux/FileDescriptor.hpp"

#include <cerrno>
#include <chrono>
#include <span>

#include <linux/netlink.h>
#include <sys/socket.h>
#include <sys/time.h>

namespace ostrivane::LinuxSocketDiag {

namespace {

using Clock = std::chrono::steady_clock;
using NetlinkDiag::Dump;
using NetlinkDiag::Family;
using NetlinkDiag::Socket;
using NetlinkDiag::Transport;

constexpr std::chrono::seconds longest{1};
constexpr timeval longestWait{.tv_sec = 0, .tv_usec = 200'000}; // the kernel answers while it is asked
constexpr int tries = 3;                     // an answer breaks off when the kernel runs short of buffers
constexpr std::size_t bufferSize = 64 << 10; // it fills half of that at most, whatever it is offered
constexpr std::uint32_t sequence = 1;        // each try asks once, over a socket of its own

struct Answer {
    Dump::Progress end = Dump::Progress::failed;
    std::vector<Socket> sockets;
};

FileDescriptor openMonitor() {
    FileDescriptor monitor(::socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC, NETLINK_SOCK_DIAG));
    if (monitor.isOpen() && ::setsockopt(monitor.get(), SOL_SOCKET, SO_RCVTIMEO, &longestWait, sizeof longestWait) != 0)
        monitor.close();
    return monitor;
}

bool send(const FileDescriptor& monitor, std::span<const std::byte> request) {
    sockaddr_nl kernel{};
    kernel.nl_family = AF_NETLINK;
    ssize_t sent;
    do
        sent = ::sendto(monitor.get(), request.data(), request.size(), 0, reinterpret_cast<const sockaddr*>(&kernel),
                        sizeof kernel);
    while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(request.size());
}

/// The kernel's next datagram, in `buffer`; empty when none comes whole.
std::span<const std::byte> receive(const FileDescriptor& monitor, std::span<std::byte> buffer,
                                   Clock::time_point deadline) {
    while (Clock::now() < deadline) {
        sockaddr_nl sender{};
        iovec piece{.iov_base = buffer.data(), .iov_len = buffer.size()};
        msghdr message{};
        message.msg_name = &sender;
        message.msg_namelen = sizeof sender;
        message.msg_iov = &piece;
        message.msg_iovlen = 1;
        const ssize_t size = ::recvmsg(monitor.get(), &message, 0);
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0 || (message.msg_flags & MSG_TRUNC) != 0)
            return {};
        if (sender.nl_pid == 0) // other processes may send to us as well
            return buffer.first(static_cast<std::size_t>(size));
    }
    return {};
}

Answer ask(std::span<const std::byte> request, Transport transport, std::span<std::byte> buffer,
           Clock::time_point deadline) {
    const FileDescriptor monitor = openMonitor();
    if (!monitor.isOpen() || !send(monitor, request))
        return {};
    Dump dump(transport, sequence);
    auto progress = Dump::Progress::more;
    while (progress == Dump::Progress::more) {
        const auto datagram = receive(monitor, buffer, deadline);
        progress = datagram.empty() ? Dump::Progress::failed : dump.take(datagram);
    }
    return {.end = progress, .sockets = std::move(dump.sockets())};
}

} // namespace

std::optional<std::vector<Socket>> sockets(Transport transport) {
    const auto deadline = Clock::now() + longest;
    std::vector<std::byte> buffer(bufferSize);
    if (transport == Transport::tcp) {
        Answer answer = ask(NetlinkDiag::requestOfEveryTCP(sequence), transport, buffer, deadline);
        if (answer.end == Dump::Progress::done)
            return std::move(answer.sockets);
    }
    std::vector<Socket> found;
    for (const Family family : {Family::ipv4, Family::ipv6}) {
        Answer answer;
        for (int i = 0; i < tries && answer.end == Dump::Progress::failed; ++i)
            answer = ask(NetlinkDiag::request(family, transport, sequence), transport, buffer, deadline);
        const bool isSwitchedOff = answer.end == Dump::Progress::missing && family == Family::ipv6;
        if (answer.end != Dump::Progress::done && !isSwitchedOff)
            return std::nullopt;
        found.insert(found.end(), answer.sockets.begin(), answer.sockets.end());
    }
    return found;
}

} // namespace ostrivane::LinuxSocketDiag
