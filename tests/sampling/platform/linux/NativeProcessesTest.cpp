#include "core/sampling/MachineCollectors.hpp"
#include "core/sampling/platform/NativeMachine.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

#include <sys/wait.h>
#include <unistd.h>

namespace ostrivane {
namespace {

/// Asks for the processes of the machine that the tests run on.
class NativeProcesses : public testing::Test {
protected:
    NativeProcesses() { collectors.hostInfo(); }

    ProcessSnapshot own(double now) {
        ProcessRequest request;
        request.now = now;
        output = collectors.processes(request);
        const auto found = std::ranges::find(output.processes, ::getpid(), &ProcessSnapshot::pid);
        EXPECT_NE(found, output.processes.end());
        return found == output.processes.end() ? ProcessSnapshot() : *found;
    }

    static double processorSeconds() {
        timespec used{};
        ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
        return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
    }

    MachineCollectors collectors{nativeMachine()};
    ProcessOutput output;
};

TEST_F(NativeProcesses, theTestsOwnFiguresAreWhatTheKernelTellsIt) {
    // What is read lies somewhere between the two looks around it.
    const double aheadOfFirst = processorSeconds();
    own(1000);
    const double behindFirst = processorSeconds();
    const double before = output.lifetimeCPUSeconds.at(::getpid());
    while (processorSeconds() < behindFirst + 0.3) {
    }
    std::vector<char> held(std::size_t{48} << 20, 'x'); // touched, so resident
    const double aheadOfSecond = processorSeconds();
    const ProcessSnapshot record = own(1010);
    const double behindSecond = processorSeconds();
    constexpr double clockTicks = 0.04; // two sums of whole hundredths of a second at both ends
    const double used = output.lifetimeCPUSeconds.at(::getpid()) - before;
    EXPECT_GT(used, aheadOfSecond - behindFirst - clockTicks);
    EXPECT_LT(used, behindSecond - aheadOfFirst + clockTicks);
    EXPECT_NEAR(record.cpu, used / 10, 1e-9);
    EXPECT_GT(record.memory, held.size() + (held.front() == 'x' ? 0u : 1u));
    EXPECT_EQ(record.uid, ::geteuid());
    EXPECT_EQ(record.ppid, ::getppid());
    ASSERT_TRUE(record.path && record.commandLine);
    EXPECT_NE(record.path->find("ostrivane_tests"), std::string::npos);
    EXPECT_NE(record.commandLine->find("ostrivane_tests"), std::string::npos);
    EXPECT_FALSE(record.isRestricted);
    EXPECT_FALSE(record.appKey.empty());
}

TEST_F(NativeProcesses, applicationsHoldEveryProcessOnce) {
    own(1000);
    const auto applications = collectors.applications(output.processes, {}, true);
    std::vector<std::int32_t> owned, all;
    for (const ApplicationSnapshot& application : applications) {
        EXPECT_FALSE(application.name.empty()) << application.key;
        owned.insert(owned.end(), application.pids.begin(), application.pids.end());
    }
    for (const ProcessSnapshot& process : output.processes)
        all.push_back(process.pid);
    std::ranges::sort(owned);
    std::ranges::sort(all);
    EXPECT_EQ(owned, all);
}

TEST_F(NativeProcesses, theEndedAreNotShown) {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    siginfo_t ended{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT), 0); // a zombie now
    own(1000);
    EXPECT_EQ(std::ranges::find(output.processes, child, &ProcessSnapshot::pid), output.processes.end());
    ::waitpid(child, nullptr, 0);
}

} // namespace
} // namespace ostrivane
