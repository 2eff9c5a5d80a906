#include "core/sampling/platform/MemoryFigures.hpp"

#include "core/sampling/platform/ARCStats.hpp"
#include "core/sampling/platform/ZRAMStat.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace ostrivane {

namespace {

constexpr std::uint64_t page = 4096;
constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();

/// A machine of a hundred mebibytes, of which `available` are available.
MemoryFigures machine(std::uint64_t available, std::uint64_t swapTotal = 0, std::uint64_t swapFree = 0) {
    MemoryFigures figures;
    figures.meminfo.total = 100 << 20;
    figures.meminfo.free = 1 << 20;
    figures.meminfo.available = available << 20;
    figures.meminfo.swapTotal = swapTotal;
    figures.meminfo.swapFree = swapFree;
    return figures;
}

std::optional<std::int64_t> level(const MemoryFigures& figures) {
    const auto reading = figures.reading(page);
    return reading ? reading->pressureLevel : std::nullopt;
}

} // namespace

TEST(Meminfo, takesTheWholeNameOfALine) {
    const Meminfo info = Meminfo::parse("MemTotal:       1000 kB\n"
                                        "SwapCached:        7 kB\n"
                                        "Active:          300 kB\n"
                                        "Active(anon):      1 kB\n"
                                        "Inactive(file):    2 kB\n"
                                        "ShmemHugePages:    3 kB\n"
                                        "Zswapped:          4 kB\n");
    EXPECT_EQ(info.total, 1000u * 1024);
    EXPECT_EQ(info.active, 300u * 1024);
    EXPECT_FALSE(info.cached || info.inactive || info.shared || info.zswap);
}

TEST(Meminfo, leavesOutWhatItCannotBelieve) {
    for (const char* text : {"", "MemFree", "MemFree:", "MemFree: kB\n", "MemFree: -1 kB\n", "MemFree: 1x kB\n",
                             "MemFree: 421", "MemFree: 4210332 k", "MemFree: 18446744073709551616 kB\n",
                             "MemFree: 18014398509481984 kB\n", "Free: 1 kB\n"})
        EXPECT_EQ(Meminfo::parse(text), Meminfo()) << text;
    EXPECT_EQ(Meminfo::parse("MemFree: 18014398509481983 kB").free, most - 1023);
}

TEST(Vmstat, takesBothCountersOrNone) {
    EXPECT_EQ(Vmstat::parse("nr_free_pages 5\npswpin 10\npswpout 20\nzswpin 3\n"), (Vmstat::SwapTraffic{10, 20}));
    EXPECT_EQ(Vmstat::parse("pswpout 20\npswpin 10"), (Vmstat::SwapTraffic{10, 20}));
    for (const char* text :
         {"", "pswpin 10\n", "pswpin x\npswpout 1\n", "pswpin\npswpout\n", "pswpinned 1\npswpout 1\n"})
        EXPECT_FALSE(Vmstat::parse(text)) << text;
}

TEST(PressureStall, takesTheLastTenSeconds) {
    const auto stall = PressureStall::parse("some avg10=12.40 avg60=6.02 avg300=1.77 total=98123456\n"
                                            "full avg10=4.10 avg60=2.22 avg300=0.60 total=41234567\n");
    EXPECT_EQ(stall, (PressureStall{12.40, 4.10}));
    for (const char* text :
         {"", "some avg10=1.00 avg60=1\n", "some avg10=12.4", "full avg10=1 avg60=1\n",
          "some avg10=12.40 avg60=6.02\nfull avg10=4.", "some avg10=nan a\nfull avg10=1 a\n",
          "some avg10=101 a\nfull avg10=1 a\n", "some avg10=-1 a\nfull avg10=1 a\n", "some 12.40 a\nfull 1 a\n"})
        EXPECT_FALSE(PressureStall::parse(text)) << text;
}

TEST(ZRAMStat, takesTheMemoryAndNotTheData) {
    EXPECT_EQ(ZRAMStat::memoryUsed("4294967296 1073741824 1111490560        0 1234567168    12345        0     2048\n"),
              1111490560u);
    for (const char* text : {"", "1 2", "1 2 33", "1 2 x 4", "1 2 -3 4"})
        EXPECT_FALSE(ZRAMStat::memoryUsed(text)) << text;
}

TEST(ARCStats, givesBackWhatLiesAboveTheLowerLimit) {
    const std::string head = "13 1 0x01 147 39984 5213456 88123456789\nname type data\nhits 4 1\n";
    EXPECT_EQ(ARCStats::reclaimable(head + "size 4 900\nc 4 950\nc_min 4 100\nc_max 4 950\n"), 800u);
    EXPECT_EQ(ARCStats::reclaimable(head + "size 4 50\nc_min 4 100\n"), 0u);
    for (const char* text : {"", "size 4 900\n", "size 4\nc_min 4 1\n", "size 900\nc_min 4 100\n"})
        EXPECT_FALSE(ARCStats::reclaimable(text)) << text;
}

TEST(MemoryFigures, tellKindsOfPagesApartSoThatTheyMakeTheTotal) {
    MemoryFigures figures;
    Meminfo& info = figures.meminfo;
    info.total = 1000 * page;
    info.free = 100 * page;
    info.active = 11 * page;
    info.inactive = 12 * page;
    info.anonymous = 200 * page;
    info.shared = 30 * page;
    info.cached = 150 * page; // shared memory included
    info.buffers = 5 * page;
    info.kernelReclaimable = 40 * page;
    info.slabReclaimable = 39 * page; // in the former already
    info.zswap = 7 * page;
    figures.zram = 8 * page;
    figures.reclaimableFileCache = 60 * page;
    figures.swapTraffic = {3, 4};

    const auto reading = figures.reading(page);
    ASSERT_TRUE(reading);
    const VMCounters& pages = reading->counters;
    EXPECT_EQ(pages.free, 100u);
    EXPECT_EQ(pages.active, 11u);
    EXPECT_EQ(pages.inactive, 12u);
    EXPECT_EQ(pages.internalPages, 230u);
    EXPECT_EQ(pages.externalPages, 120u + 5 + 40 + 60);
    EXPECT_EQ(pages.compressor, 15u);
    EXPECT_EQ(pages.wired, 1000u - 100 - 230 - 225 - 15);
    EXPECT_EQ(pages.swapins, 3u);
    EXPECT_EQ(pages.swapouts, 4u);

    info.kernelReclaimable.reset();
    EXPECT_EQ(figures.reading(page)->counters.externalPages, 120u + 5 + 39 + 60) << "kernels before 4.20";
}

TEST(MemoryFigures, needTheTotalAndTheFreeMemory) {
    MemoryFigures figures;
    EXPECT_FALSE(figures.reading(page));
    figures.meminfo.free = page;
    EXPECT_FALSE(figures.reading(page));
    figures.meminfo.total = 0;
    EXPECT_FALSE(figures.reading(page));
    figures.meminfo.total = 10 * page;
    EXPECT_TRUE(figures.reading(page));
    EXPECT_FALSE(figures.reading(0));
}

TEST(MemoryFigures, sayNothingThatAContainerDoesNotTell) {
    MemoryFigures figures;
    figures.meminfo = Meminfo::parse("MemTotal: 4000 kB\nMemFree: 1000 kB\n");
    const auto reading = figures.reading(page);
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->counters.wired, 750u);
    EXPECT_FALSE(reading->swap);
    EXPECT_FALSE(reading->availablePercent);
    EXPECT_FALSE(reading->pressureLevel);

    figures.pressure = PressureStall{11, 0};
    EXPECT_EQ(level(figures), 2) << "stalls are measured without an estimate of what is available";
    figures.meminfo.swapTotal = 100;
    EXPECT_FALSE(figures.reading(page)->swap) << "how much of it is used is not told";
}

TEST(MemoryFigures, countNoMoreThanThereIsWhenLinesAreOfDifferentMachines) {
    MemoryFigures figures = machine(50);
    figures.meminfo.cached = 20 << 20;
    figures.meminfo.anonymous = std::uint64_t(40) << 30; // the host's
    const auto reading = figures.reading(page);
    ASSERT_TRUE(reading);
    const VMCounters& pages = reading->counters;
    EXPECT_EQ(pages.externalPages, (20u << 20) / page);
    EXPECT_EQ(pages.wired, 0u);
    EXPECT_EQ(pages.free + pages.externalPages + pages.internalPages, (100u << 20) / page);
}

TEST(MemoryFigures, doNotOverflow) {
    MemoryFigures figures;
    Meminfo& info = figures.meminfo;
    info.total = info.free = info.available = info.buffers = info.cached = info.anonymous = most;
    info.shared = info.kernelReclaimable = info.zswap = info.swapTotal = most;
    info.swapFree = 0;
    figures.zram = figures.reclaimableFileCache = most;
    const auto reading = figures.reading(1);
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->counters.wired, 0u);
    EXPECT_EQ(reading->availablePercent, 100);
    EXPECT_EQ(reading->swap, (SwapUsage{most, most}));

    figures.reclaimableFileCache = 0;
    info.available = most / 2;
    EXPECT_GE(figures.reading(page)->availablePercent, 49);
    EXPECT_LE(figures.reading(page)->availablePercent, 50);
}

TEST(MemoryFigures, roundTheAvailableShareDown) {
    MemoryFigures figures = machine(10);
    figures.meminfo.available = (std::uint64_t(11) << 20) - 1;
    EXPECT_EQ(figures.reading(page)->availablePercent, 10);
    figures.reclaimableFileCache = 1;
    EXPECT_EQ(figures.reading(page)->availablePercent, 11);
    figures.reclaimableFileCache = std::uint64_t(1) << 40;
    EXPECT_EQ(figures.reading(page)->availablePercent, 100);
}

TEST(MemoryFigures, swapThatIsFreerThanItIsLargeIsUnused) {
    EXPECT_EQ(machine(50, 100, 70).reading(page)->swap, (SwapUsage{.total = 100, .used = 30}));
    EXPECT_EQ(machine(50, 100, 200).reading(page)->swap, (SwapUsage{.total = 100, .used = 0}));
    EXPECT_EQ(machine(50).reading(page)->swap, (SwapUsage{})) << "none is a reading";
}

TEST(PressureLevel, followsTheStalls) {
    struct {
        double some, full;
        std::int64_t want;
    } cases[] = {{0, 0, 1}, {9.99, 9.99, 1}, {10, 0, 2}, {99, 9.99, 2}, {10, 10, 4}, {61.2, 44, 4}};
    for (const auto& c : cases) {
        MemoryFigures figures = machine(50);
        figures.pressure = PressureStall{c.some, c.full};
        EXPECT_EQ(level(figures), c.want) << c.some << " " << c.full;
    }
}

TEST(PressureLevel, isRaisedWhenNothingIsLeftThoughNobodyWaits) {
    struct {
        std::uint64_t available, swapTotal, swapFree;
        std::int64_t want;
    } cases[] = {{5, 0, 0, 1},     {4, 0, 0, 2},     {3, 0, 0, 2},    {2, 0, 0, 4},
                 {2, 1000, 50, 2}, {2, 1000, 49, 4}, {4, 1000, 0, 2}, {2, 1000, 1000, 2}};
    for (const auto& c : cases) {
        MemoryFigures figures = machine(c.available, c.swapTotal, c.swapFree);
        figures.pressure = PressureStall{};
        EXPECT_EQ(level(figures), c.want) << c.available << " " << c.swapFree;
    }
    MemoryFigures stalled = machine(4);
    stalled.pressure = PressureStall{50, 50};
    EXPECT_EQ(level(stalled), 4) << "a floor lowers nothing";
    MemoryFigures untold = machine(2);
    untold.pressure = PressureStall{};
    untold.meminfo.swapTotal.reset();
    EXPECT_EQ(level(untold), 2) << "swap that is not told of is not known to be used up";
}

TEST(PressureLevel, followsWhatIsAvailableWhereStallsAreNotMeasured) {
    struct {
        std::uint64_t available;
        std::int64_t want;
    } cases[] = {{91, 1}, {10, 1}, {9, 2}, {5, 2}, {4, 4}, {0, 4}};
    for (const auto& c : cases)
        EXPECT_EQ(level(machine(c.available, 1000, 1000)), c.want) << c.available;
}

} // namespace ostrivane
