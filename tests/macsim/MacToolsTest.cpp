#include "core/sampling/platform/macos/MacSockets.hpp"
#include "core/sampling/platform/macos/MacSystemProcesses.hpp"

#include <gtest/gtest.h>

using namespace ostrivane;

namespace {

/// Tools that print what a test has set, and note how they were called.
struct FakeCommands final : Commands {
    std::optional<std::string> run(const std::string& path, const std::vector<std::string>& arguments,
                                   double timeout) override {
        call = path;
        for (const std::string& argument : arguments)
            call += " " + argument;
        seconds = timeout;
        return output;
    }

    std::optional<std::string> output;
    std::string call;
    double seconds = 0;
};

TEST(MacTools, trafficIsWhatNettopPrints) {
    FakeCommands tools;
    MacSockets sockets(tools);
    EXPECT_FALSE(sockets.traffic());
    EXPECT_EQ(tools.call, "/usr/bin/nettop -P -L 1 -x -n -J bytes_in,bytes_out");
    EXPECT_EQ(tools.seconds, 4);
    for (const char* nothing : {"", ",bytes_in,bytes_out,\n"}) {
        tools.output = nothing;
        EXPECT_EQ(sockets.traffic(), PidMap<TrafficTotals>()) << "an answer, if an empty one";
    }
    tools.output = ",bytes_in,bytes_out,\nSome.App.1234,10,20,\n";
    EXPECT_EQ(sockets.traffic(), (PidMap<TrafficTotals>{{1234, {10, 20}}}));
}

TEST(MacTools, systemProcessesAreWhatPSPrints) {
    FakeCommands tools;
    MacSystemProcesses processes(tools);
    EXPECT_FALSE(processes.totals());
    EXPECT_EQ(tools.call, "/bin/ps -axo pid=,time=,rss=");
    EXPECT_EQ(tools.seconds, 4);
    tools.output = "    1   4:41.87  14624\n";
    EXPECT_EQ(processes.totals(), (PidMap<SystemProcessTotals>{{1, {28187, 14624}}}));
}

} // namespace
