#include "core/sampling/platform/macos/MacMemory.hpp"

#include "tests/macsim/MacSimTest.hpp"

using namespace ostrivane;

namespace {

class MacMemoryTest : public MacSimTest {
protected:
    std::optional<MemoryReading> reading() {
        const HostPort port;
        return MacMemory(port).reading();
    }
};

} // namespace

TEST_F(MacMemoryTest, readsPagesSwapAndPressureTogether) {
    const auto memory = reading();
    ASSERT_TRUE(memory);
    EXPECT_EQ(memory->counters.internalPages, 553000u);
    EXPECT_EQ(memory->counters.swapouts, 2500u);
    EXPECT_EQ(memory->swap, (SwapUsage{.total = 2147483648, .used = 1207959552}));
    EXPECT_EQ(memory->pressureLevel, 1);
    EXPECT_EQ(memory->availablePercent, 57);
}

TEST_F(MacMemoryTest, leavesOutWhatTheKernelDoesNotTell) {
    macsim::sysctls().clear();
    const auto memory = reading();
    ASSERT_TRUE(memory);
    EXPECT_EQ(memory->counters.free, 12000u);
    EXPECT_FALSE(memory->swap);
    EXPECT_FALSE(memory->pressureLevel);
    EXPECT_FALSE(memory->availablePercent);
}

TEST_F(MacMemoryTest, isAbsentWithoutItsPageCounters) {
    macsim::mach().vmStatistics.resize(148); // a kernel that knows fewer of them
    EXPECT_FALSE(reading());
    macsim::reset();
    macsim::refuse("host_statistics64");
    EXPECT_FALSE(reading());
}

TEST_F(MacMemoryTest, readsAKernelThatHasMoreCountersThanItKnows) {
    macsim::mach().vmStatistics.resize(200, std::byte{0xFF});
    ASSERT_TRUE(reading());
    EXPECT_EQ(reading()->counters.free, 12000u);
}
