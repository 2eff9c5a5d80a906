#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// The Linux kernel's socket monitoring over netlink: requests as bytes, and answers from bytes, which may be anything.
namespace ostrivane::NetlinkDiag {

enum class Family : std::uint8_t { ipv4, ipv6 };
enum class Transport : std::uint8_t { tcp, udp };

/// States of a socket as the kernel numbers them; a UDP socket is `established` with a peer and `closed` without one.
namespace State {
constexpr std::uint8_t established = 1;
constexpr std::uint8_t synSent = 2;
constexpr std::uint8_t finWait1 = 4;
constexpr std::uint8_t finWait2 = 5;
constexpr std::uint8_t closed = 7;
constexpr std::uint8_t closeWait = 8;
constexpr std::uint8_t listening = 10;
} // namespace State

using Address = std::array<std::byte, 16>; ///< in network order; an IPv4 address takes the first 4

/// One socket of this network namespace, whoever owns it.
struct Socket {
    Family family = Family::ipv4;
    Transport transport = Transport::tcp;
    std::uint8_t state = 0;
    std::uint16_t localPort = 0;
    std::uint16_t remotePort = 0;
    Address localAddress{};
    Address remoteAddress{};
    std::uint32_t uid = 0;
    std::uint32_t inode = 0;  ///< 0 when no process holds it any more
    std::uint64_t cookie = 0; ///< names the socket for as long as the machine runs; never used again
    /// Bytes of ours that the peer confirmed, and bytes received; absent for UDP, which does not count. The kernel
    /// counts the opening of a connection as one confirmed byte, on the side that opens it, and its end as one on
    /// either side.
    std::optional<std::uint64_t> acked;
    std::optional<std::uint64_t> received;

    friend bool operator==(const Socket&, const Socket&) = default;
};

constexpr std::size_t requestSize = 72;

/// Asks for all sockets of a kind, but for TCP sockets that no process holds. The answer bears `sequence`.
std::array<std::byte, requestSize> request(Family family, Transport transport, std::uint32_t sequence);

constexpr std::size_t requestOfEveryTCPSize = 76;

/// Asks for the same TCP sockets over both families at once, which saves the kernel a walk through its whole table. By
/// an interface that its newer one has not replaced so far; ask by family where it is refused.
std::array<std::byte, requestOfEveryTCPSize> requestOfEveryTCP(std::uint32_t sequence);

/// The answer to one request, taken in datagram by datagram.
class Dump {
public:
    enum class Progress {
        more,    ///< the next datagram belongs to it too
        done,    ///< `sockets` is complete
        missing, ///< the kernel has no monitor for this kind of socket
        failed,  ///< cut off, disturbed or refused: ask anew
    };

    Dump(Transport transport, std::uint32_t sequence) : kind(transport), number(sequence) {}

    /// Messages that bear another sequence number are passed over: they answer an older request.
    Progress take(std::span<const std::byte> datagram);

    std::vector<Socket>& sockets() { return found; }

private:
    Progress takeMessage(std::span<const std::byte> message);

    Transport kind;
    std::uint32_t number;
    bool disturbed = false;
    std::vector<Socket> found;
};

} // namespace ostrivane::NetlinkDiag
