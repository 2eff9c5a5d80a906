#include "core/sampling/platform/NetlinkDiag.hpp"

#include "core/sampling/platform/Bytes.hpp"

#include <algorithm>

namespace ostrivane::NetlinkDiag {

namespace {

// The kernel's numbers (linux/netlink.h, linux/sock_diag.h, linux/inet_diag.h, linux/tcp.h); the records have no
// padding that differs between machines, and have grown at their ends only.

namespace Header { // nlmsghdr
constexpr std::size_t size = 16;
constexpr std::size_t length = 0;
constexpr std::size_t type = 4;
constexpr std::size_t flags = 6;
constexpr std::size_t sequence = 8;
} // namespace Header

namespace Type {
constexpr std::uint16_t error = 2;
constexpr std::uint16_t done = 3;
constexpr std::uint16_t overrun = 4;
constexpr std::uint16_t tcpSocket = 18;
constexpr std::uint16_t socketByFamily = 20;
} // namespace Type

constexpr std::uint16_t flagsOfDump = 0x301; // request, root, match
constexpr std::uint16_t flagDisturbed = 0x10;

namespace Request { // inet_diag_req_v2, behind a header
constexpr std::size_t family = Header::size + 0;
constexpr std::size_t protocol = Header::size + 1;
constexpr std::size_t extensions = Header::size + 2;
constexpr std::size_t states = Header::size + 4;
} // namespace Request

namespace RequestOfTCP { // inet_diag_req, behind a header
constexpr std::size_t extensions = Header::size + 3;
constexpr std::size_t states = Header::size + 52;
} // namespace RequestOfTCP

namespace Record { // inet_diag_msg, behind a header
constexpr std::size_t size = 72;
constexpr std::size_t family = 0;
constexpr std::size_t state = 1;
constexpr std::size_t localPort = 4;
constexpr std::size_t remotePort = 6;
constexpr std::size_t localAddress = 8;
constexpr std::size_t remoteAddress = 24;
constexpr std::size_t cookie = 44;
constexpr std::size_t uid = 64;
constexpr std::size_t inode = 68;
} // namespace Record

constexpr std::uint8_t familyIPv4 = 2;
constexpr std::uint8_t familyIPv6 = 10; // Linux's number, on whatever system the bytes are looked at

constexpr std::uint8_t protocolTCP = 6;
constexpr std::uint8_t protocolUDP = 17;

constexpr std::size_t attributeHeader = 4;
constexpr std::uint16_t tcpInfo = 2;
constexpr std::size_t tcpInfoAcked = 120;
constexpr std::size_t tcpInfoReceived = 128;

constexpr std::int32_t noEntry = 2; // ENOENT

constexpr std::uint32_t bit(std::uint8_t state) {
    return 1U << state;
}

/// Sockets that were closed on our side only go on receiving; those that nobody holds any more are of no use, but
/// cannot be told apart in a request.
constexpr std::uint32_t statesOfTCP = bit(State::established) | bit(State::synSent) | bit(State::finWait1) |
                                      bit(State::finWait2) | bit(State::closeWait) | bit(State::listening);
constexpr std::uint32_t everyState = 0xFFFF'FFFF;

template <class Number>
Number field(std::span<const std::byte> record, std::size_t offset) {
    return Bytes::littleEndian<Number>(record, offset).value_or(0);
}

template <class Number>
void store(std::span<std::byte> record, std::size_t offset, Number value) {
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        record[offset + i] = static_cast<std::byte>((value >> (8 * i)) & 0xFF);
}

std::uint16_t port(std::span<const std::byte> record, std::size_t offset) {
    return static_cast<std::uint16_t>(std::to_integer<unsigned>(record[offset]) << 8 |
                                      std::to_integer<unsigned>(record[offset + 1]));
}

Address address(std::span<const std::byte> record, std::size_t offset) {
    Address bytes;
    std::copy_n(record.begin() + static_cast<std::ptrdiff_t>(offset), bytes.size(), bytes.begin());
    return bytes;
}

constexpr std::size_t aligned(std::size_t length) {
    return (length + 3) & ~std::size_t(3);
}

/// What follows the first `length` bytes and their padding, which is missing behind the last one.
std::span<const std::byte> behind(std::span<const std::byte> bytes, std::size_t length) {
    return bytes.subspan(std::min(aligned(length), bytes.size()));
}

/// The attribute of a type; empty when there is none.
std::span<const std::byte> attribute(std::span<const std::byte> list, std::uint16_t wanted) {
    while (list.size() >= attributeHeader) {
        const std::size_t length = field<std::uint16_t>(list, 0);
        if (length < attributeHeader || length > list.size())
            break;
        if (field<std::uint16_t>(list, 2) == wanted)
            return list.subspan(attributeHeader, length - attributeHeader);
        list = behind(list, length);
    }
    return {};
}

std::optional<Family> familyOf(std::uint8_t number) {
    switch (number) {
    case familyIPv4:
        return Family::ipv4;
    case familyIPv6:
        return Family::ipv6;
    default:
        return std::nullopt;
    }
}

std::optional<Socket> parseSocket(std::span<const std::byte> payload, Transport transport) {
    if (payload.size() < Record::size)
        return std::nullopt;
    const auto family = familyOf(field<std::uint8_t>(payload, Record::family));
    if (!family)
        return std::nullopt;
    Socket socket{.family = *family,
                  .transport = transport,
                  .state = field<std::uint8_t>(payload, Record::state),
                  .localPort = port(payload, Record::localPort),
                  .remotePort = port(payload, Record::remotePort),
                  .localAddress = address(payload, Record::localAddress),
                  .remoteAddress = address(payload, Record::remoteAddress),
                  .uid = field<std::uint32_t>(payload, Record::uid),
                  .inode = field<std::uint32_t>(payload, Record::inode),
                  .cookie = field<std::uint64_t>(payload, Record::cookie),
                  .acked = std::nullopt,
                  .received = std::nullopt};
    if (transport == Transport::tcp) {
        const auto info = attribute(payload.subspan(Record::size), tcpInfo);
        socket.received = Bytes::littleEndian<std::uint64_t>(info, tcpInfoReceived);
        socket.acked = Bytes::littleEndian<std::uint64_t>(info, tcpInfoAcked);
    }
    return socket;
}

} // namespace

std::array<std::byte, requestSize> request(Family family, Transport transport, std::uint32_t sequence) {
    const bool isTCP = transport == Transport::tcp;
    std::array<std::byte, requestSize> bytes{};
    store(bytes, Header::length, static_cast<std::uint32_t>(requestSize));
    store(bytes, Header::type, Type::socketByFamily);
    store(bytes, Header::flags, flagsOfDump);
    store(bytes, Header::sequence, sequence);
    store(bytes, Request::family, family == Family::ipv4 ? familyIPv4 : familyIPv6);
    store(bytes, Request::protocol, isTCP ? protocolTCP : protocolUDP);
    store(bytes, Request::extensions, static_cast<std::uint8_t>(isTCP ? 1U << (tcpInfo - 1) : 0U));
    store(bytes, Request::states, isTCP ? statesOfTCP : everyState);
    return bytes;
}

std::array<std::byte, requestOfEveryTCPSize> requestOfEveryTCP(std::uint32_t sequence) {
    std::array<std::byte, requestOfEveryTCPSize> bytes{};
    store(bytes, Header::length, static_cast<std::uint32_t>(requestOfEveryTCPSize));
    store(bytes, Header::type, Type::tcpSocket);
    store(bytes, Header::flags, flagsOfDump);
    store(bytes, Header::sequence, sequence);
    store(bytes, RequestOfTCP::extensions, static_cast<std::uint8_t>(1U << (tcpInfo - 1)));
    store(bytes, RequestOfTCP::states, statesOfTCP);
    return bytes;
}

Dump::Progress Dump::take(std::span<const std::byte> datagram) {
    while (!datagram.empty()) {
        const std::size_t length = field<std::uint32_t>(datagram, Header::length);
        if (length < Header::size || length > datagram.size())
            return Progress::failed;
        const auto progress = takeMessage(datagram.first(length));
        if (progress != Progress::more)
            return progress;
        datagram = behind(datagram, length);
    }
    return Progress::more;
}

Dump::Progress Dump::takeMessage(std::span<const std::byte> message) {
    if (field<std::uint32_t>(message, Header::sequence) != number)
        return Progress::more;
    disturbed = disturbed || (field<std::uint16_t>(message, Header::flags) & flagDisturbed) != 0;
    const auto payload = message.subspan(Header::size);
    switch (field<std::uint16_t>(message, Header::type)) {
    case Type::tcpSocket:
    case Type::socketByFamily:
        if (const auto socket = parseSocket(payload, kind))
            found.push_back(*socket);
        return Progress::more;
    case Type::done: // it may carry the reason why the walk broke off
        return disturbed || field<std::int32_t>(payload, 0) < 0 ? Progress::failed : Progress::done;
    case Type::error:
        return Bytes::littleEndian<std::int32_t>(payload, 0) == -noEntry ? Progress::missing : Progress::failed;
    case Type::overrun:
        return Progress::failed;
    default:
        return Progress::more;
    }
}

} // namespace ostrivane::NetlinkDiag
