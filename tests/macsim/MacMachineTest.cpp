#include "core/sampling/platform/NativeMachine.hpp"

#include "tests/macsim/MacSimTest.hpp"

#include <boost/asio/io_context.hpp>

using namespace ostrivane;

using MacMachineTest = MacSimTest;

TEST_F(MacMachineTest, asksThroughOnePortAndGivesItBack) {
    {
        const auto machine = nativeMachine();
        EXPECT_EQ(nativeMachine()->platform(), Platform::macOS);
        EXPECT_EQ(machine->host().info().coreLayout.logical, 10);
        EXPECT_TRUE(machine->processor().ticks());
        EXPECT_TRUE(machine->memory().reading());
        EXPECT_EQ(macsim::balance(), (macsim::Balance{.hostPorts = 1}));
    }
    boost::asio::io_context context;
    EXPECT_GT(nativeClock(context.get_executor())->now(), Date{1.7e9});
}
