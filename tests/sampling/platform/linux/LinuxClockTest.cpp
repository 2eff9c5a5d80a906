#include "core/sampling/platform/linux/LinuxClock.hpp"

#include "tests/TemporaryFolder.hpp"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include <sys/resource.h>

namespace ostrivane {

namespace {

namespace asio = boost::asio;
using Moment = std::chrono::steady_clock::time_point;

/// With the kernel's timer that goes on in sleep, and without: no descriptor is left for one.
class LinuxClockTest : public testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        asio::steady_timer before(context, std::chrono::seconds(0)); // Asio's own descriptors are made here
        before.wait();
        rlimit limit{};
        ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
        const rlimit scarce{.rlim_cur = GetParam() ? 0 : limit.rlim_cur, .rlim_max = limit.rlim_max};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &scarce), 0);
        clock.emplace(context.get_executor());
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    }

    asio::io_context context;
    std::optional<LinuxClock> clock;
};

} // namespace

TEST_P(LinuxClockTest, wakesOnceAndNotBeforeItsTime) {
    int wakes = 0;
    const Moment start = std::chrono::steady_clock::now();
    clock->wait(0.02, [&] { ++wakes; });
    EXPECT_EQ(wakes, 0);
    context.run();
    EXPECT_EQ(wakes, 1);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
}

TEST_P(LinuxClockTest, wakesForTimesThatAreNone) {
    for (const double seconds :
         {0.0, -1.0, 1e-12, -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        int wakes = 0;
        clock->wait(seconds, [&] { ++wakes; });
        EXPECT_EQ(wakes, 0) << "never from within the call";
        context.restart();
        context.run();
        EXPECT_EQ(wakes, 1) << seconds;
    }
}

TEST_P(LinuxClockTest, aNewWaitTakesThePlaceOfTheOneBefore) {
    std::vector<int> wakes;
    clock->wait(0.001, [&] { wakes.push_back(1); });
    clock->wait(0.01, [&] { wakes.push_back(2); });
    context.run();
    EXPECT_EQ(wakes, std::vector<int>{2});

    clock->wait(1e12, [&] { wakes.push_back(3); }); // longer than any timer takes
    clock->wait(0.001, [&] { wakes.push_back(4); });
    context.restart();
    context.run();
    EXPECT_EQ(wakes, (std::vector<int>{2, 4}));
}

TEST_P(LinuxClockTest, aWaitThatHasEndedIsStillReplaced) {
    std::vector<int> wakes;
    clock->wait(0.001, [&] { wakes.push_back(1); });
    std::this_thread::sleep_for(std::chrono::milliseconds(5)); // its time has come, its end was not handled yet
    const Moment start = std::chrono::steady_clock::now();
    clock->wait(0.02, [&] { wakes.push_back(2); });
    context.run();
    EXPECT_EQ(wakes, std::vector<int>{2});
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));

    // The same once the end is queued: the handler that is asked first puts a new wait behind it.
    wakes.clear();
    context.restart();
    clock->wait(0.001, [&] { wakes.push_back(3); });
    asio::post(context, [&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        clock->wait(0.001, [&] { wakes.push_back(4); });
    });
    context.run();
    EXPECT_EQ(wakes, std::vector<int>{4});
}

TEST_P(LinuxClockTest, cancelPreventsTheWake) {
    int wakes = 0;
    clock->cancel();
    clock->wait(0.001, [&] { ++wakes; });
    clock->cancel();
    context.run();
    EXPECT_EQ(wakes, 0);

    context.restart();
    clock->wait(0.001, [&] { ++wakes; });
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    clock->cancel();
    context.run();
    EXPECT_EQ(wakes, 0) << "its time had come already";

    context.restart();
    clock->wait(0.001, [&] { ++wakes; });
    context.run();
    EXPECT_EQ(wakes, 1) << "the clock goes on after that";
}

TEST_P(LinuxClockTest, aWakeMayStartTheNextWait) {
    int wakes = 0;
    std::function<void()> again = [&] {
        if (++wakes < 5)
            clock->wait(0.001, again);
    };
    clock->wait(0.001, again);
    context.run();
    EXPECT_EQ(wakes, 5);
}

TEST_P(LinuxClockTest, goesInTheMiddleOfAWait) {
    int wakes = 0;
    auto kept = std::make_shared<int>(0);
    clock->wait(0.001, [&wakes, kept] { ++wakes; });
    clock.reset();
    context.run();
    EXPECT_EQ(wakes, 0);
    EXPECT_EQ(kept.use_count(), 1) << "what the wake held is let go";
}

TEST_P(LinuxClockTest, goesInItsOwnWake) {
    clock->wait(0.001, [&] { clock.reset(); });
    context.run();
    EXPECT_FALSE(clock);
}

INSTANTIATE_TEST_SUITE_P(Timers, LinuxClockTest, testing::Bool(),
                         [](const auto& timer) { return timer.param ? "Steady" : "Boot"; });

TEST(LinuxClock, goesWithAWaitThatNobodyRunsAnyMore) {
    auto kept = std::make_shared<int>(0);
    {
        asio::io_context context;
        LinuxClock clock(context.get_executor());
        clock.wait(10, [kept] {});
    }
    EXPECT_EQ(kept.use_count(), 1);
}

TEST(LinuxClock, isReplacedFromAnotherThreadThanTheOneItWakesOn) {
    asio::io_context context;
    auto work = asio::make_work_guard(context);
    std::thread runner([&] { context.run(); });
    LinuxClock clock(context.get_executor());
    std::atomic<int> last{-1};
    constexpr int rounds = 300;
    for (int round = 0; round < rounds; ++round) {
        clock.wait(round % 3 * 1e-5, [&last, round] { last = round; });
        if (round % 7 == 0)
            clock.cancel();
    }
    clock.wait(0.001, [&] {
        last = rounds;
        work.reset();
    });
    runner.join();
    EXPECT_EQ(last, rounds);
}

TEST(LinuxClock, countsTheTimeAsleep) {
    boost::asio::io_context context;
    LinuxClock clock(context.get_executor());
    clock.wait(3600, [] {});
    std::size_t timers = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fdinfo"))
        timers += contentOf(entry.path().string()).find("clockid: " + std::to_string(CLOCK_BOOTTIME) + "\n") !=
                  std::string::npos;
    EXPECT_EQ(timers, 1u) << "the kernel's clock that goes on in suspend, and ends a wait at once after it";
}

TEST(LinuxClock, showsTheWallClock) {
    asio::io_context context;
    LinuxClock clock(context.get_executor());
    const auto seconds = [] { return static_cast<double>(::time(nullptr)); };
    const double before = seconds();
    const Date now = clock.now();
    EXPECT_GE(now.seconds, before);
    EXPECT_LE(now.seconds, seconds() + 1);
}

} // namespace ostrivane
