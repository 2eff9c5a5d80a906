#include "core/sampling/platform/DescriptorLimit.hpp"

#include "core/sampling/platform/Command.hpp"

#include <gtest/gtest.h>

#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace ostrivane;

namespace {

class DescriptorLimitTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0); }
    void TearDown() override { ::setrlimit(RLIMIT_NOFILE, &before); }

    static rlim_t soft() {
        rlimit limit{};
        ::getrlimit(RLIMIT_NOFILE, &limit);
        return limit.rlim_cur;
    }
    static std::optional<std::string> limitOfChild() { return Command::run("/bin/sh", {"-c", "ulimit -n"}, 20); }

    rlimit before{};
};

TEST_F(DescriptorLimitTest, isRaisedForThisProgramAlone) {
    constexpr rlim_t few = 200;
    ASSERT_GT(before.rlim_max, few);
    const rlimit low{few, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &low), 0);
    EXPECT_EQ(DescriptorLimit::budget(), few / 2);
    for (int time = 0; time < 2; ++time) {
        DescriptorLimit::raise(); // a second time changes nothing
        EXPECT_EQ(soft(), before.rlim_max);
        EXPECT_GT(DescriptorLimit::budget(), few / 2);
        EXPECT_EQ(limitOfChild(), "200\n");
    }
}

TEST_F(DescriptorLimitTest, aChildIsStartedWhileMoreDescriptorsAreOpenThanItMayHave) {
    constexpr rlim_t few = 30;
    const rlimit low{few, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &low), 0);
    DescriptorLimit::raise();
    std::vector<int> kept;
    while (kept.size() < few * 3) // not marked, as those that a library opens
        kept.push_back(::open("/dev/null", O_RDONLY));
    EXPECT_EQ(limitOfChild(), "30\n");
    EXPECT_EQ(Command::run("/bin/sh", {"-c", "ls /proc/self/fd | wc -l"}, 20), "4\n")
        << "the standard three, and the folder that is listed";
    for (const int descriptor : kept)
        ::close(descriptor);
}

} // namespace
