#include "core/sampling/platform/DRMLedger.hpp"
#include "core/sampling/platform/DRMUsage.hpp"
#include "core/sampling/platform/PCIIDs.hpp"
#include "tests/Fixtures.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <limits>

using namespace ostrivane;

namespace {

std::string text(std::string_view name) {
    std::ifstream file(fixture(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

DRMUsage usage(std::string_view name) {
    return DRMUsage::parse(text(name)).value_or(DRMUsage());
}

DRMUsage counting(std::uint64_t client, std::uint64_t nanos, std::uint64_t capacity = 1) {
    DRMUsage made;
    made.driver = "i915";
    made.address = "0000:00:02.0";
    made.client = client;
    made.engines = {{.name = "render", .busyNanos = nanos, .capacity = capacity}};
    return made;
}

DRMUsage inCycles(std::uint64_t cycles, std::uint64_t total) {
    DRMUsage made = counting(1, 0);
    made.engines = {{.name = "rcs", .cycles = cycles, .totalCycles = total}};
    return made;
}

constexpr std::uint64_t second = 1'000'000'000;
const std::string intel = "0000:00:02.0";

} // namespace

TEST(DRMUsage, readsWhatDriversWrite) {
    const DRMUsage i915 = usage("linux/laptop-intel-hybrid/proc/1300/fdinfo/9");
    EXPECT_EQ(i915.driver, "i915");
    EXPECT_EQ(i915.device(), "0000:00:02.0");
    EXPECT_EQ(i915.client, 12u);
    const std::vector<DRMUsage::Engine> want{{.name = "render", .busyNanos = 25662044495},
                                             {.name = "copy", .busyNanos = 0},
                                             {.name = "video", .busyNanos = 400000000, .capacity = 2},
                                             {.name = "video-enhance", .busyNanos = 0}};
    EXPECT_EQ(i915.engines, want);

    const DRMUsage xe = usage("linux/laptop-intel-hybrid/odd/fdinfo-xe");
    ASSERT_EQ(xe.engines.size(), 2u);
    EXPECT_EQ(xe.engines[1], (DRMUsage::Engine{.name = "vcs", .cycles = 0, .totalCycles = 7655183225, .capacity = 2}));

    const DRMUsage panthor = usage("linux/board-arm-big-little/odd/fdinfo-panthor");
    EXPECT_EQ(panthor.device(), "panthor") << "on no bus";
    ASSERT_EQ(panthor.engines.size(), 1u);
    EXPECT_EQ(panthor.engines[0].busyNanos, 111110952750u);

    EXPECT_EQ(usage("linux/desktop-amd/odd/fdinfo-amdgpu").engines.size(), 3u);
}

TEST(DRMUsage, passesOverLinesThatItCannotRead) {
    const auto damaged = DRMUsage::parse("drm-client-id:\t7\n"
                                         "drm-engine-a:\t5 us\n"  // another unit
                                         "drm-engine-b:\t5\n"     // none
                                         "drm-engine-c:\t-5 ns\n" //
                                         "drm-engine-d:\t99999999999999999999999 ns\n"
                                         "drm-engine-:\t5 ns\n"        // no name
                                         "drm-engine-capacity-e:\t0\n" // would divide by 0
                                         "drm-engine-e:\t5 ns\n"
                                         "drm-engine-f"); // cut off
    ASSERT_TRUE(damaged);
    EXPECT_EQ(damaged->engines, (std::vector<DRMUsage::Engine>{{.name = "e", .busyNanos = 5}}));
    for (const char* nothing : {"", "pos:\t0\nflags:\t02100002\n", "drm-driver:\ti915\n", "drm-client-id:\tx\n",
                                "drm-client-id:\n", "drm-client-id", "client-id: 5\n"})
        EXPECT_FALSE(DRMUsage::parse(nothing)) << nothing;

    std::string endless = "drm-client-id: 1\n";
    for (int i = 0; i < 10000; ++i)
        endless += "drm-engine-" + std::to_string(i) + ": 1 ns\n";
    EXPECT_LE(DRMUsage::parse(endless).value_or(DRMUsage()).engines.size(), 64u);
}

TEST(DRMLedger, countsAClientOnceForTheLowestProcess) {
    const DRMUsage shell = usage("linux/laptop-intel-hybrid/proc/1300/fdinfo/9");
    const DRMUsage firefox = usage("linux/laptop-intel-hybrid/proc/3300/fdinfo/70");
    DRMUsage otherChip = firefox;
    otherChip.address = "0000:03:00.0"; // the same number there is another client
    DRMLedger ledger;
    ledger.update({{3300, &shell}, {1300, &shell}, {1300, &shell}, {3300, &firefox}, {3400, &otherChip}}, 10);
    const PidMap<std::uint64_t> want{{1300, 25862044495}, {3300, 9 * second}, {3400, 9 * second}};
    EXPECT_EQ(ledger.processTimes(), want);
    EXPECT_FALSE(ledger.load(intel)) << "nothing to compare with";
}

TEST(DRMLedger, measuresTheBusiestEngineBetweenTwoReadings) {
    DRMUsage a = counting(1, 5 * second), b = counting(2, 0);
    a.engines.push_back({.name = "video", .busyNanos = 0, .capacity = 2});
    DRMLedger ledger;
    ledger.update({{7, &a}, {8, &b}}, 10);
    a.engines[0].busyNanos = 5 * second + second / 2;
    a.engines[1].busyNanos = 3 * second; // of two engines that could have had 4
    b.engines[0].busyNanos = second / 4;
    ledger.update({{7, &a}, {8, &b}}, 12);
    const auto load = ledger.load(intel);
    ASSERT_TRUE(load);
    EXPECT_DOUBLE_EQ(load->renderer.value_or(-1), 0.375);
    EXPECT_DOUBLE_EQ(load->busiest, 0.75);
    EXPECT_EQ(ledger.processTimes().at(7), 5 * second + second / 2 + 3 * second / 2);
    EXPECT_FALSE(ledger.load("0000:03:00.0"));
    ledger.update({}, 14);
    EXPECT_FALSE(ledger.load(intel)) << "no client any more";
    EXPECT_TRUE(ledger.processTimes().empty());
}

TEST(DRMLedger, readsTheShareOfCycles) {
    DRMUsage client = usage("linux/laptop-intel-hybrid/odd/fdinfo-xe");
    DRMLedger ledger;
    ledger.update({{7, &client}}, 100);
    EXPECT_EQ(ledger.processTimes().at(7), 0u);
    client = usage("linux/laptop-intel-hybrid/odd/fdinfo-xe-later");
    ledger.update({{7, &client}}, 103);
    const auto load = ledger.load("0000:03:00.0");
    ASSERT_TRUE(load);
    EXPECT_DOUBLE_EQ(load->busiest, 0.5);
    EXPECT_DOUBLE_EQ(load->renderer.value_or(-1), 0.5);
    EXPECT_EQ(ledger.processTimes().at(7), 3 * second / 2);
}

TEST(DRMLedger, keepsTheHigherWhenACounterDips) {
    DRMUsage client = counting(1, 10 * second);
    DRMLedger ledger;
    std::vector<std::uint64_t> totals;
    double now = 0;
    for (const std::uint64_t nanos : {10 * second, 9 * second, 11 * second, std::uint64_t(0), 11 * second}) {
        client.engines[0].busyNanos = nanos;
        ledger.update({{7, &client}}, now += 2);
        totals.push_back(ledger.processTimes().at(7));
    }
    EXPECT_EQ(totals, (std::vector<std::uint64_t>{10 * second, 10 * second, 11 * second, 11 * second, 11 * second}));
    EXPECT_DOUBLE_EQ(ledger.load(intel).value_or(DRMLedger::Load{.busiest = -1, .renderer = {}}).busiest, 0);
}

// The counter of possible cycles starts again when the chip was switched off; that of the used ones goes on.
TEST(DRMLedger, beginsAnewWhenPossibleCyclesStartAgain) {
    DRMLedger ledger;
    std::vector<double> shares;
    double now = 0;
    for (const DRMUsage& client : {inCycles(1000, 50000), inCycles(1500, 51000), inCycles(1600, 20),
                                   inCycles(1650, 120), inCycles(900, 220), inCycles(9000, 320)}) {
        ledger.update({{7, &client}}, now += 1);
        shares.push_back(ledger.load(intel).value_or(DRMLedger::Load{.busiest = -1, .renderer = {}}).busiest);
    }
    EXPECT_EQ(shares, (std::vector<double>{-1, 0.5, -1, 0.5, 0, 1}));
    EXPECT_EQ(ledger.processTimes().at(7), 2 * second);
}

// A rate is made of these totals: a sudden second of work, or one that was taken back, would show as a false one.
TEST(DRMLedger, bringsNoOldTimeIntoAKnownProcess) {
    DRMUsage first = counting(1, 4 * second), late = counting(2, 50 * second), passed = counting(3, 70 * second);
    DRMLedger ledger;
    ledger.update({{7, &first}, {5, &passed}}, 1);
    ledger.update({{7, &first}, {7, &late}, {5, &passed}}, 2);
    EXPECT_EQ(ledger.processTimes().at(7), 4 * second) << "a client found late";
    late.engines[0].busyNanos = 51 * second;
    passed.engines[0].busyNanos = 72 * second;
    ledger.update({{7, &late}, {7, &passed}}, 4);
    EXPECT_EQ(ledger.processTimes(), (PidMap<std::uint64_t>{{7, 7 * second}})) << "one closed, one came from process 5";
}

TEST(DRMLedger, standsAbsurdCountersAndClocks) {
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    DRMUsage wild = counting(1, most - 5);
    wild.engines.push_back({.name = "copy", .busyNanos = most - 5});
    DRMLedger ledger;
    ledger.update({{7, &wild}}, 5);
    EXPECT_EQ(ledger.processTimes().at(7), most);
    wild.engines[0].busyNanos = most;
    ledger.update({{7, &wild}}, 5);
    EXPECT_FALSE(ledger.load(intel)) << "no time between";
    ledger.update({{7, &wild}}, 3);
    EXPECT_FALSE(ledger.load(intel)) << "back in time";
    wild = counting(1, 0, most);
    ledger.update({{7, &wild}}, 4);
    EXPECT_EQ(ledger.processTimes().at(7), most);
}

TEST(PCIIDs, namesADeviceAsItIsSold) {
    const std::string list = text("linux/desktop-amd/usr/share/misc/pci.ids");
    EXPECT_EQ(PCIIDs::deviceName(list, 0x1002, 0x73df), "Radeon RX 6700/6700 XT/6750 XT / 6800M/6850M XT");
    EXPECT_EQ(PCIIDs::deviceName(list, 0x8086, 0x46a6), "Iris Xe Graphics");
    EXPECT_FALSE(PCIIDs::deviceName(list, 0x8086, 0x73df)) << "another maker's";
    EXPECT_FALSE(PCIIDs::deviceName(list, 0x1002, 0x0e36)) << "a board, not a device";
    const char* odd = "1002  Maker\n\t0001  Plain\n\t0002  Empty []\n\t0003  \n\t0004  ][\n\t0005  Cut [open\n"
                      "C 03  Class\n\t0001  Not a device\n";
    EXPECT_EQ(PCIIDs::deviceName(odd, 0x1002, 1), "Plain");
    EXPECT_EQ(PCIIDs::deviceName(odd, 0x1002, 2), "Empty []");
    EXPECT_FALSE(PCIIDs::deviceName(odd, 0x1002, 3));
    EXPECT_EQ(PCIIDs::deviceName(odd, 0x1002, 4), "][");
    EXPECT_EQ(PCIIDs::deviceName(odd, 0x1002, 5), "Cut [open");
    EXPECT_EQ(PCIIDs::id("0x1002\n"), 0x1002);
    for (const char* none : {"", "1002", "0x", "0x10020", "0xzz", "0x-1"})
        EXPECT_FALSE(PCIIDs::id(none)) << none;
}
