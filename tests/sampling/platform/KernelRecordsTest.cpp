#include "core/sampling/platform/KernelRecords.hpp"

#include "core/sampling/platform/Bytes.hpp"
#include "tests/sampling/platform/KernelSamples.hpp"

#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>

using namespace ostrivane;

namespace {

std::vector<std::byte> bytes(std::initializer_list<int> values) {
    std::vector<std::byte> out;
    for (const int value : values)
        out.push_back(static_cast<std::byte>(value));
    return out;
}

std::vector<std::byte> bytesOf(std::string_view text) {
    const auto view = std::as_bytes(std::span(text));
    return {view.begin(), view.end()};
}

} // namespace

TEST(KernelRecords, readsPageCounters) {
    const KernelSample pages = kernelSample("vm_statistics64");
    const VMCounters want{.free = pages.value("free"),
                          .active = pages.value("active"),
                          .inactive = pages.value("inactive"),
                          .speculative = pages.value("speculative"),
                          .wired = pages.value("wired"),
                          .purgeable = pages.value("purgeable"),
                          .compressor = pages.value("compressor"),
                          .internalPages = pages.value("internalPages"),
                          .externalPages = pages.value("externalPages"),
                          .swapins = pages.value("swapins"),
                          .swapouts = pages.value("swapouts")};
    EXPECT_EQ(KernelRecords::vmCounters(pages.record), want);
    expectNeedsAllOf(pages.record, KernelRecords::vmCounters);
}

TEST(KernelRecords, readsSwapUsage) {
    const KernelSample swap = kernelSample("xsw_usage");
    EXPECT_EQ(KernelRecords::swapUsage(swap.record),
              (SwapUsage{.total = swap.value("total"), .used = swap.value("used")}));
    expectNeedsAllOf(swap.record, KernelRecords::swapUsage);
}

TEST(KernelRecords, readsEveryCounterAsUnsigned) {
    const auto full = KernelRecords::vmCounters(std::vector<std::byte>(152, std::byte{0xFF}));
    ASSERT_TRUE(full);
    EXPECT_EQ(full->free, std::numeric_limits<std::uint32_t>::max());
    EXPECT_EQ(full->swapins, std::numeric_limits<std::uint64_t>::max());
    const auto ticks = KernelRecords::cpuTicks(std::vector<std::byte>(16, std::byte{0xFF}), 1);
    ASSERT_TRUE(ticks);
    EXPECT_EQ(ticks->perCore[0][CPUTicks::nice], std::numeric_limits<std::uint32_t>::max());
    EXPECT_TRUE(ticks->wraps32);
}

TEST(KernelRecords, keepsToTheCoresThatTheCountersCover) {
    const std::vector<std::byte> twoCores(32);
    EXPECT_EQ(KernelRecords::cpuTicks(twoCores, 2)->perCore.size(), 2u);
    EXPECT_FALSE(KernelRecords::cpuTicks(twoCores, 3));
    EXPECT_FALSE(KernelRecords::cpuTicks(std::span(twoCores).first(31), 2));
    EXPECT_FALSE(KernelRecords::cpuTicks(twoCores, 0));
    EXPECT_FALSE(KernelRecords::cpuTicks(twoCores, std::numeric_limits<std::size_t>::max())); // 16 times that is small
}

TEST(KernelRecords, readsATimeWithItsFraction) {
    // 1714640390 seconds and 250000 microseconds. The last four bytes are padding and may hold anything.
    const auto time = bytes({0x06, 0x56, 0x33, 0x66, 0, 0, 0, 0, 0x90, 0xD0, 0x03, 0, 0xAA, 0xAA, 0xAA, 0xAA});
    EXPECT_EQ(KernelRecords::date(time), Date{1714640390.25});
    expectNeedsAllOf(time, KernelRecords::date);
}

TEST(KernelRecords, hasNoTimeForImpossibleParts) {
    auto negative = bytes({0, 0, 0, 0, 0, 0, 0, 0x80, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_FALSE(KernelRecords::date(negative));
    auto oddFraction = bytes({1, 0, 0, 0, 0, 0, 0, 0, 0x40, 0x42, 0x0F, 0, 0, 0, 0, 0}); // a million microseconds
    EXPECT_FALSE(KernelRecords::date(oddFraction));
    oddFraction[11] = std::byte{0xFF}; // and fewer than none
    EXPECT_FALSE(KernelRecords::date(oddFraction));
}

TEST(KernelRecords, readsNumbersByTheirLength) {
    EXPECT_EQ(KernelRecords::integer(bytes({0xFF, 0xFF, 0xFF, 0xFF})), -1);
    EXPECT_EQ(KernelRecords::integer(bytes({0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0})), 4294967295);
    EXPECT_EQ(KernelRecords::integer(bytes({0, 0, 0, 0, 0, 0, 0, 0x80})), std::numeric_limits<std::int64_t>::min());
    for (const std::size_t length : {0u, 1u, 2u, 3u, 5u, 7u, 9u, 16u})
        EXPECT_FALSE(KernelRecords::integer(std::vector<std::byte>(length, std::byte{1}))) << length;
}

TEST(KernelRecords, endsATextAtItsFirstZero) {
    EXPECT_EQ(KernelRecords::text(bytesOf("Mac14,9")), "Mac14,9");
    EXPECT_EQ(KernelRecords::text(bytesOf(std::string_view("Mac mini\0\0rest", 14))), "Mac mini");
    EXPECT_EQ(KernelRecords::text(bytesOf("Mac\xFFmini")), "Mac\uFFFDmini");
    EXPECT_FALSE(KernelRecords::text({}));
    EXPECT_FALSE(KernelRecords::text(bytes({0, 'a'})));
}

TEST(KernelRecords, readsCoresFromTheRegistry) {
    EXPECT_EQ(KernelRecords::coreIndex(bytes({5, 1, 0, 0})), 261);
    EXPECT_EQ(KernelRecords::coreIndex(bytes({5, 0, 0, 0, 9, 9})), 5);
    EXPECT_EQ(KernelRecords::coreIndex(bytes({0, 0, 0, 0x80})), 2147483648); // no sign
    EXPECT_FALSE(KernelRecords::coreIndex(bytes({5, 0, 0})));
    EXPECT_EQ(KernelRecords::coreKind(bytesOf("E")), CoreLoad::Kind::efficiency);
    EXPECT_EQ(KernelRecords::coreKind(bytes({'P', 0})), CoreLoad::Kind::performance);
    for (const char* other : {"", "X", "e", "p", " E"})
        EXPECT_FALSE(KernelRecords::coreKind(bytesOf(other))) << other;
    EXPECT_FALSE(KernelRecords::coreKind(bytes({0xC5}))); // "E" with the highest bit
}

TEST(Bytes, giveNothingBeyondTheEnd) {
    const auto four = bytes({1, 2, 3, 4});
    EXPECT_EQ(Bytes::littleEndian<std::uint16_t>(four, 2), 0x0403);
    EXPECT_FALSE(Bytes::littleEndian<std::uint16_t>(four, 3));
    EXPECT_FALSE(Bytes::littleEndian<std::uint8_t>(four, std::numeric_limits<std::size_t>::max()));
    EXPECT_FALSE(Bytes::littleEndian<std::uint64_t>(four, std::numeric_limits<std::size_t>::max() - 3));
    EXPECT_EQ(Bytes::littleEndian<std::int8_t>(bytes({0x80}), 0), -128);
}
