#include "core/sampling/platform/linux/LinuxSockets.hpp"

#include "core/sampling/platform/linux/LinuxSocketDiag.hpp"
#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace ostrivane;

namespace {

constexpr std::uint64_t opening = 1; ///< byte that the kernel counts for it, on the side that opens a connection

/// A TCP connection with both ends in this process.
class Loopback {
public:
    explicit Loopback(int family) : listener(family) {
        sockaddr_storage address{};
        address.ss_family = static_cast<sa_family_t>(family);
        socklen_t size = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
        if (family == AF_INET)
            reinterpret_cast<sockaddr_in&>(address).sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        else
            reinterpret_cast<sockaddr_in6&>(address).sin6_addr = in6addr_loopback;
        auto* const place = reinterpret_cast<sockaddr*>(&address);
        if (::bind(listener.get(), place, size) != 0 || ::listen(listener.get(), 1) != 0 ||
            ::getsockname(listener.get(), place, &size) != 0)
            return;
        client = Socket(family);
        port = ntohs(family == AF_INET ? reinterpret_cast<sockaddr_in&>(address).sin_port
                                       : reinterpret_cast<sockaddr_in6&>(address).sin6_port);
        if (::connect(client.get(), place, size) == 0)
            server = FileDescriptor(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
    }

    bool isOpen() const { return server.isOpen(); }

    /// Sends and takes in on the other side; whether all arrived.
    static bool move(const FileDescriptor& from, const FileDescriptor& to, std::size_t size) {
        std::vector<char> piece(4096);
        for (std::size_t moved = 0; moved < size;) {
            const ssize_t sent = ::send(from.get(), piece.data(), std::min(piece.size(), size - moved), 0);
            if (sent <= 0 || ::recv(to.get(), piece.data(), static_cast<std::size_t>(sent), MSG_WAITALL) != sent)
                return false;
            moved += static_cast<std::size_t>(sent);
        }
        return true;
    }

private:
    struct Socket : FileDescriptor {
        Socket() = default;
        explicit Socket(int family) : FileDescriptor(::socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0)) {}
    };
    Socket listener;

public:
    Socket client;
    FileDescriptor server;
    std::uint16_t port = 0;
};

class LinuxSocketsTest : public testing::TestWithParam<int> {
protected:
    void SetUp() override {
        if (!LinuxSocketDiag::sockets(NetlinkDiag::Transport::tcp))
            GTEST_SKIP() << "this kernel has no socket monitor";
        if (!Loopback(GetParam()).isOpen())
            GTEST_SKIP() << "this machine has no such loopback address";
    }
    static constexpr std::uint32_t someUser = 4'000'000'000;

    const RootFolder root;
    const std::int32_t self = ::getpid();
};

TEST_P(LinuxSocketsTest, theKernelTellsBothEndsOfAConnectionToTheByte) {
    Loopback pair(GetParam());
    ASSERT_TRUE(Loopback::move(pair.client, pair.server, 100'000));
    ASSERT_TRUE(Loopback::move(pair.server, pair.client, 7));
    const auto sockets = LinuxSocketDiag::sockets(NetlinkDiag::Transport::tcp);
    ASSERT_TRUE(sockets);
    int ends = 0;
    for (const NetlinkDiag::Socket& socket : *sockets) {
        if (socket.state != NetlinkDiag::State::established)
            continue;
        const bool isClient = socket.remotePort == pair.port;
        if (!isClient && socket.localPort != pair.port)
            continue;
        ++ends;
        EXPECT_EQ(socket.received, isClient ? 7U : 100'000U);
        EXPECT_EQ(socket.acked, isClient ? 100'000U + opening : 7U);
        EXPECT_EQ(socket.uid, ::geteuid());
        EXPECT_NE(socket.inode, 0U);
        EXPECT_EQ(socket.family, GetParam() == AF_INET ? NetlinkDiag::Family::ipv4 : NetlinkDiag::Family::ipv6);
    }
    EXPECT_EQ(ends, 2);
}

TEST_P(LinuxSocketsTest, whatIsSentAppearsForTheProcessThatSends) {
    LinuxSockets sockets(root, ::geteuid());
    Loopback early(GetParam());
    ASSERT_TRUE(Loopback::move(early.client, early.server, 50'000));
    const auto first = sockets.traffic();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->at(self), TrafficTotals{});

    Loopback late(GetParam());
    ASSERT_TRUE(Loopback::move(early.client, early.server, 1'000));
    ASSERT_TRUE(Loopback::move(late.server, late.client, 200'000));
    const auto second = sockets.traffic();
    ASSERT_TRUE(second);
    EXPECT_EQ(second->at(self), (TrafficTotals{201'000, 201'000 + opening}));

    late.client.close();
    late.server.close();
    const auto third = sockets.traffic();
    ASSERT_TRUE(third);
    EXPECT_EQ(third->at(self), second->at(self)) << "closing moves nothing";
}

TEST_P(LinuxSocketsTest, aConnectionClosedOnOneSideGoesOnCounting) {
    LinuxSockets sockets(root, ::geteuid());
    Loopback pair(GetParam());
    sockets.traffic();
    ASSERT_EQ(::shutdown(pair.client.get(), SHUT_WR), 0);
    ASSERT_TRUE(Loopback::move(pair.server, pair.client, 30'000));
    const auto totals = sockets.traffic();
    ASSERT_TRUE(totals);
    // The end of a direction is counted as a byte, by the side that confirms it and by the one that is confirmed.
    EXPECT_EQ(totals->at(self), (TrafficTotals{30'001, 30'001}));
}

TEST_P(LinuxSocketsTest, aChildThatTookTheConnectionOverIsItsHolder) {
    LinuxSockets sockets(root, ::geteuid());
    Loopback pair(GetParam());
    sockets.traffic();
    int go[2];
    ASSERT_EQ(::pipe(go), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        char byte;
        ::close(go[1]);
        ::_exit(::read(go[0], &byte, 1) == 0 ? 0 : 1); // until the other end is closed
    }
    ::close(go[0]);
    ASSERT_TRUE(Loopback::move(pair.client, pair.server, 9'000));
    const auto totals = sockets.traffic();
    ::close(go[1]);
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    ASSERT_TRUE(totals);
    EXPECT_EQ(totals->at(child), (TrafficTotals{9'000, 9'000}));
    EXPECT_EQ(totals->at(self), TrafficTotals{});

    ASSERT_TRUE(Loopback::move(pair.client, pair.server, 500));
    const auto after = sockets.traffic();
    ASSERT_TRUE(after);
    EXPECT_FALSE(after->contains(child));
    EXPECT_EQ(after->at(self), (TrafficTotals{500, 500})) << "it still holds the connection";
}

TEST_P(LinuxSocketsTest, otherUsersSocketsBelongToNobody) {
    LinuxSockets sockets(root, someUser);
    Loopback pair(GetParam());
    sockets.traffic();
    ASSERT_TRUE(Loopback::move(pair.client, pair.server, 9'000));
    const auto totals = sockets.traffic();
    ASSERT_TRUE(totals);
    for (const auto& [pid, total] : *totals)
        EXPECT_EQ(total, TrafficTotals{}) << pid;
}

INSTANTIATE_TEST_SUITE_P(Families, LinuxSocketsTest, testing::Values(AF_INET, AF_INET6),
                         [](const auto& family) { return family.param == AF_INET ? "IPv4" : "IPv6"; });

TEST(LinuxSockets, areAbsentWhenTheKernelDoesNotAnswer) {
    const TemporaryFolder folder;
    const RootFolder root(folder.path());
    bool answers = true;
    LinuxSockets sockets(root, 1000, [&](NetlinkDiag::Transport) {
        return answers ? std::optional(std::vector<NetlinkDiag::Socket>()) : std::nullopt;
    });
    EXPECT_TRUE(sockets.traffic());
    answers = false;
    EXPECT_FALSE(sockets.traffic());
}

TEST(LinuxSockets, findHoldersInATreeOfLinks) {
    const TemporaryFolder folder;
    const auto process = [&](const std::string& pid, const std::string& start, const std::string& link) {
        std::filesystem::create_directories(folder.path() / "proc" / pid / "fd");
        folder.write("proc/" + pid + "/stat",
                     pid + " (x) S 1 1 1 0 -1 1 9 8 7 6 1 2 3 4 20 0 1 0 " + start + " 1 1 1\n");
        std::filesystem::create_symlink(link, folder.path() / "proc" / pid / "fd/3");
    };
    process("50", "5", "socket:[700]");
    process("60", "6", "/home/a/socket:[700]");
    process("70", "4", "socket:[700]");
    std::filesystem::create_directories(folder.path() / "proc/80"); // ended, or hides its descriptors
    std::filesystem::create_directories(folder.path() / "proc/sys/fd");
    const RootFolder root(folder.path());
    NetlinkDiag::Socket socket;
    socket.inode = 700;
    socket.uid = 1000;
    socket.acked = 0;
    socket.received = 0;
    LinuxSockets sockets(root, 1000, [&](NetlinkDiag::Transport) { return std::optional(std::vector{socket}); });
    sockets.traffic();
    socket.received = 10;
    EXPECT_EQ(sockets.traffic(), (PidMap<TrafficTotals>{{50, {10, 0}}, {60, {}}, {70, {}}}));
}

} // namespace
