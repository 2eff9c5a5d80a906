#include "core/sampling/platform/SocketTraffic.hpp"

#include <gtest/gtest.h>

using namespace ostrivane;

namespace {

NetlinkDiag::Socket tcp(std::uint64_t cookie, SocketInode inode, std::uint64_t received, std::uint64_t acked) {
    NetlinkDiag::Socket socket;
    socket.cookie = cookie;
    socket.inode = inode;
    socket.received = received;
    socket.acked = acked;
    return socket;
}

/// Two processes; 10 holds the sockets 100 to 109, 20 the sockets 200 to 209.
SocketOwnership twoProcesses() {
    SocketOwnership known;
    known.processes = {{10, 1}, {20, 2}};
    for (SocketInode inode = 100; inode < 110; ++inode) {
        known.places[inode] = {.pid = 10, .descriptor = 3};
        known.places[inode + 100] = {.pid = 20, .descriptor = 3};
    }
    return known;
}

using Totals = PidMap<TrafficTotals>;

TEST(SocketTraffic, countsFromTheFirstCallOn) {
    SocketTraffic traffic;
    const SocketOwnership known = twoProcesses();
    EXPECT_EQ(traffic.update({tcp(1, 100, 5000, 7000)}, known), (Totals{{10, {0, 0}}, {20, {0, 0}}}))
        << "what was moved before, nobody saw";
    EXPECT_EQ(traffic.update({tcp(1, 100, 5010, 7020), tcp(2, 100, 3, 4), tcp(3, 200, 5, 6)}, known),
              (Totals{{10, {13, 24}}, {20, {5, 6}}}))
        << "a new socket was opened since: all it has counts";
}

TEST(SocketTraffic, totalsNeverFall) {
    SocketTraffic traffic;
    const SocketOwnership known = twoProcesses();
    traffic.update({tcp(1, 100, 0, 0), tcp(2, 100, 0, 0)}, known);
    traffic.update({tcp(1, 100, 500, 500), tcp(2, 100, 50, 50)}, known);
    EXPECT_EQ(traffic.update({tcp(2, 100, 51, 50)}, known).at(10), (TrafficTotals{551, 550})) << "one was closed";
    EXPECT_EQ(traffic.update({tcp(2, 100, 40, 60)}, known).at(10), (TrafficTotals{551, 560})) << "one fell";
    EXPECT_EQ(traffic.update({tcp(2, 100, 45, 60)}, known).at(10), (TrafficTotals{556, 560}));
}

TEST(SocketTraffic, aSocketPassedOverOnceDoesNotComeBackAsNew) {
    SocketTraffic traffic;
    const SocketOwnership known = twoProcesses();
    traffic.update({tcp(1, 100, 1'000'000, 0)}, known);
    traffic.update({}, known);
    EXPECT_EQ(traffic.update({tcp(1, 100, 1'000'007, 0)}, known).at(10).bytesIn, 7U);
}

TEST(SocketTraffic, countsEachSocketOnceHoweverOftenItIsTold) {
    SocketTraffic traffic;
    const SocketOwnership known = twoProcesses();
    traffic.update({}, known);
    EXPECT_EQ(traffic.update({tcp(1, 100, 7, 0), tcp(1, 100, 7, 0)}, known).at(10).bytesIn, 7U);
}

TEST(SocketTraffic, whatASocketMovedWhileItsHolderIsSoughtIsNotLost) {
    SocketTraffic traffic;
    SocketOwnership known = twoProcesses();
    traffic.update({}, known);
    known.sought = {300};
    traffic.update({tcp(1, 300, 10, 0)}, known);
    traffic.update({tcp(1, 300, 30, 0)}, known);
    known.sought.clear();
    known.places[300] = {.pid = 20, .descriptor = 4};
    EXPECT_EQ(traffic.update({tcp(1, 300, 35, 0)}, known).at(20).bytesIn, 35U);
}

TEST(SocketTraffic, aSocketWithoutHolderCountsForNobodyLaterEither) {
    SocketTraffic traffic;
    SocketOwnership known = twoProcesses();
    traffic.update({}, known);
    EXPECT_EQ(traffic.update({tcp(1, 300, 10, 0), tcp(2, 0, 10, 0)}, known), (Totals{{10, {}}, {20, {}}}));
    known.places[300] = {.pid = 20, .descriptor = 4};
    EXPECT_EQ(traffic.update({tcp(1, 300, 15, 0)}, known).at(20).bytesIn, 5U);
}

TEST(SocketTraffic, aProcessThatEndedLosesItsTotalsToNobody) {
    SocketTraffic traffic;
    SocketOwnership known = twoProcesses();
    traffic.update({}, known);
    traffic.update({tcp(1, 100, 10, 10), tcp(2, 200, 10, 10)}, known);
    known.processes = {{10, 99}}; // 20 is gone, another process has the number 10
    known.places.clear();
    EXPECT_EQ(traffic.update({tcp(1, 100, 12, 12)}, known), (Totals{{10, {0, 0}}}));
}

TEST(SocketTraffic, passesOverSocketsThatDoNotCount) {
    SocketTraffic traffic;
    const SocketOwnership known = twoProcesses();
    traffic.update({}, known);
    NetlinkDiag::Socket silent = tcp(1, 100, 0, 0);
    silent.acked.reset();
    EXPECT_EQ(traffic.update({silent}, known).at(10), TrafficTotals{});
}

} // namespace
