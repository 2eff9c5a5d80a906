#include "core/sampling/platform/macos/MacProcessor.hpp"

#include "tests/macsim/MacSimTest.hpp"

using namespace ostrivane;

using MacProcessorTest = MacSimTest;

TEST_F(MacProcessorTest, readsTheTicksOfEachCoreUnsigned) {
    const HostPort port;
    MacProcessor processor(port);
    const auto ticks = processor.ticks();
    ASSERT_TRUE(ticks);
    EXPECT_TRUE(ticks->wraps32);
    EXPECT_EQ(ticks->perCore,
              (std::vector<CPUTicks::Core>{{1000, 500, 8000, 0}, {4000000000, 2200000000, 4294967295, 0}}));
    for (int tick = 0; tick < 3; ++tick)
        EXPECT_TRUE(processor.ticks());
    EXPECT_EQ(macsim::balance(), (macsim::Balance{.hostPorts = 1})); // one right, however often it asks
}

TEST_F(MacProcessorTest, hasNoTicksWhenNoneAreHandedOut) {
    const HostPort port;
    MacProcessor processor(port);
    macsim::mach().missingCounters = 1;
    EXPECT_FALSE(processor.ticks()) << "a core cut short";
    macsim::mach().ticks.clear();
    EXPECT_FALSE(processor.ticks()) << "no core at all";
    macsim::refuse("host_processor_info buffer");
    EXPECT_FALSE(processor.ticks());
    macsim::refuse("host_processor_info");
    EXPECT_FALSE(processor.ticks());
}

TEST_F(MacProcessorTest, readsTheLoadAverage) {
    const HostPort port;
    MacProcessor processor(port);
    EXPECT_EQ(processor.loadAverage(), (LoadAverage{2.5, 1.75, 1.25}));
    macsim::refuse("getloadavg");
    EXPECT_FALSE(processor.loadAverage());
}
