#include "core/sampling/platform/NetlinkDiag.hpp"

#include "core/sampling/platform/Bytes.hpp"

#include <gtest/gtest.h>

#include <algorithm>

using namespace ostrivane;
using NetlinkDiag::Dump;
using NetlinkDiag::Family;
using NetlinkDiag::Transport;
using Progress = NetlinkDiag::Dump::Progress;

namespace {

using ByteList = std::vector<std::byte>;

constexpr std::uint32_t sequence = 7;

template <class Number>
void put(ByteList& bytes, std::size_t offset, Number value) {
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        bytes.at(offset + i) = static_cast<std::byte>(static_cast<std::uint64_t>(value) >> (8 * i));
}

ByteList operator+(ByteList a, const ByteList& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

ByteList message(std::uint16_t type, const ByteList& payload, std::uint16_t flags = 2,
                 std::uint32_t number = sequence) {
    ByteList bytes(16);
    put(bytes, 0, static_cast<std::uint32_t>(16 + payload.size()));
    put(bytes, 4, type);
    put(bytes, 6, flags);
    put(bytes, 8, number);
    bytes = bytes + payload;
    bytes.resize((bytes.size() + 3) / 4 * 4);
    return bytes;
}

ByteList attribute(std::uint16_t type, std::size_t size) {
    ByteList bytes(4 + size);
    put(bytes, 0, static_cast<std::uint16_t>(bytes.size()));
    put(bytes, 2, type);
    bytes.resize((bytes.size() + 3) / 4 * 4);
    return bytes;
}

/// A socket as the kernel tells it, with `infoSize` bytes of its TCP figures behind an attribute of another type.
ByteList socketRecord(std::uint8_t family, std::size_t infoSize) {
    ByteList bytes(72);
    put(bytes, 0, family);
    put(bytes, 1, std::uint8_t{1});
    put(bytes, 4, std::uint16_t{0x5000}); // port 80, high byte first
    put(bytes, 6, std::uint16_t{0x3930}); // port 12345
    put(bytes, 8, std::uint32_t{0x0100007F});
    put(bytes, 24, std::uint32_t{0x0200007F});
    put(bytes, 44, std::uint64_t{0x1122334455667788});
    put(bytes, 64, std::uint32_t{1000});
    put(bytes, 68, std::uint32_t{424242});
    ByteList info = attribute(2, infoSize);
    if (infoSize >= 136) {
        put(info, 4 + 120, std::uint64_t{5'000'000'000});
        put(info, 4 + 128, std::uint64_t{6'000'000'000});
    }
    return bytes + attribute(8, 1) + info;
}

ByteList done(std::int32_t error = 0) {
    ByteList payload(4);
    put(payload, 0, error);
    return message(3, payload);
}

TEST(NetlinkDiag, asksForTheStatesThatProcessesHold) {
    const auto tcp = NetlinkDiag::request(Family::ipv6, Transport::tcp, 0x01020304);
    const auto number = [](const auto& bytes, std::size_t at) {
        return *Bytes::littleEndian<std::uint32_t>(bytes, at);
    };
    EXPECT_EQ(number(tcp, 0), 72U);
    EXPECT_EQ(number(tcp, 4), 0x0301'0014U);
    EXPECT_EQ(number(tcp, 8), 0x01020304U);
    EXPECT_EQ(number(tcp, 16), 0x0002'060AU); // IPv6, TCP, with tcp_info
    EXPECT_EQ(number(tcp, 20), 0x0536U);      // no time-wait: it has no holder and may be thousands
    const auto both = NetlinkDiag::requestOfEveryTCP(7);
    EXPECT_EQ(number(both, 0), 76U);
    EXPECT_EQ(number(both, 4), 0x0301'0012U);
    EXPECT_EQ(number(both, 16), 0x0200'0000U); // with tcp_info
    EXPECT_EQ(number(both, 68), 0x0536U);
    const auto udp = NetlinkDiag::request(Family::ipv4, Transport::udp, 1);
    EXPECT_EQ(number(udp, 16), 0x0000'1102U);
    EXPECT_EQ(number(udp, 20), 0xFFFF'FFFFU);
}

TEST(NetlinkDiag, readsSocketsByOffsetHoweverLongTheRecordHasGrown) {
    for (const std::size_t infoSize : {136U, 232U, 280U, 400U}) {
        Dump dump(Transport::tcp, sequence);
        ASSERT_EQ(dump.take(message(20, socketRecord(2, infoSize)) + message(20, socketRecord(10, infoSize))),
                  Progress::more);
        ASSERT_EQ(dump.take(done()), Progress::done);
        ASSERT_EQ(dump.sockets().size(), 2U);
        const NetlinkDiag::Socket& socket = dump.sockets()[0];
        EXPECT_EQ(socket.localPort, 80);
        EXPECT_EQ(socket.remotePort, 12345);
        EXPECT_EQ(socket.localAddress[0], std::byte{127});
        EXPECT_EQ(socket.remoteAddress[3], std::byte{2});
        EXPECT_EQ(socket.cookie, 0x1122334455667788U);
        EXPECT_EQ(socket.uid, 1000U);
        EXPECT_EQ(socket.inode, 424242U);
        EXPECT_EQ(socket.acked, 5'000'000'000U);
        EXPECT_EQ(socket.received, 6'000'000'000U);
        EXPECT_EQ(dump.sockets()[1].family, Family::ipv6);
    }
}

TEST(NetlinkDiag, hasNoFiguresWhereTheKernelIsTooOldForThem) {
    Dump dump(Transport::tcp, sequence);
    ASSERT_EQ(dump.take(message(20, socketRecord(2, 104)) + message(20, socketRecord(2, 130)) + done()),
              Progress::done);
    ASSERT_EQ(dump.sockets().size(), 2U);
    EXPECT_FALSE(dump.sockets()[0].acked);
    EXPECT_TRUE(dump.sockets()[1].acked);
    EXPECT_FALSE(dump.sockets()[1].received) << "cut within";
}

TEST(NetlinkDiag, tellsACompleteAnswerFromABrokenOne) {
    const auto end = [](const ByteList& datagram) { return Dump(Transport::tcp, sequence).take(datagram); };
    ByteList noSuchModule(20);
    put(noSuchModule, 0, std::int32_t{-2});
    ByteList refused(20);
    put(refused, 0, std::int32_t{-1});
    EXPECT_EQ(end(done()), Progress::done);
    EXPECT_EQ(end(message(3, {})), Progress::done);
    EXPECT_EQ(end(done(-105)), Progress::failed) << "the kernel ran short";
    EXPECT_EQ(end(message(20, socketRecord(2, 280), 2 | 0x10) + done()), Progress::failed) << "the tables changed";
    EXPECT_EQ(end(message(2, noSuchModule)), Progress::missing);
    EXPECT_EQ(end(message(2, refused)), Progress::failed);
    EXPECT_EQ(end(message(2, {})), Progress::failed);
    EXPECT_EQ(end(message(4, {})), Progress::failed);
    EXPECT_EQ(end(message(20, socketRecord(17, 280)) + message(999, {})), Progress::more) << "neither is ours to read";

    Dump later(Transport::tcp, sequence);
    EXPECT_EQ(later.take(message(20, socketRecord(2, 280), 2, sequence - 1) + message(3, {}, 2, sequence - 1)),
              Progress::more);
    EXPECT_TRUE(later.sockets().empty()) << "the answer to an older question";
}

TEST(NetlinkDiag, survivesBytesThatAreCutOrWrongAnywhere) {
    const ByteList whole = message(20, socketRecord(2, 280)) + message(20, socketRecord(10, 280)) + done();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        Dump dump(Transport::tcp, sequence);
        const ByteList cut(whole.begin(),
                           whole.begin() + static_cast<std::ptrdiff_t>(size)); // so that a checker sees its end
        const auto progress = dump.take(cut);
        EXPECT_NE(progress, Progress::done) << size;
        for (const auto& socket : dump.sockets())
            EXPECT_EQ(socket.received, 6'000'000'000U) << size;
    }
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
            ByteList wrong = whole;
            wrong[at] = static_cast<std::byte>(value);
            Dump dump(Transport::tcp, sequence);
            dump.take(wrong);
            EXPECT_LE(dump.sockets().size(), 2U);
        }
}

} // namespace
