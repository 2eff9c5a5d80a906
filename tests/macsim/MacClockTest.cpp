#include "core/sampling/platform/macos/MacClock.hpp"

#include "tests/macsim/MacSimTest.hpp"

#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>

#include <chrono>
#include <cmath>
#include <limits>

using namespace ostrivane;

namespace {

class MacClockTest : public MacSimTest {
protected:
    void TearDown() override {
        clock.reset();
        MacSimTest::TearDown();
    }
    auto counting(int& count) {
        return [&count] { ++count; };
    }
    void timePasses() {
        macsim::fireTimers();
        context.restart();
        context.poll();
    }

    boost::asio::io_context context;
    std::unique_ptr<MacClock> clock = std::make_unique<MacClock>(context.get_executor());
};

} // namespace

TEST_F(MacClockTest, wakesOnceWhenTheTimeIsOver) {
    int woken = 0;
    clock->wait(2.5, counting(woken));
    EXPECT_EQ(macsim::timers(), std::vector<std::int64_t>{2'500'000'000});
    context.poll();
    EXPECT_EQ(woken, 0);
    timePasses();
    timePasses();
    EXPECT_EQ(woken, 1);
}

TEST_F(MacClockTest, waitsAgainFromWithinAWake) {
    int woken = 0;
    clock->wait(1, [this, &woken] {
        ++woken;
        clock->wait(2, counting(woken));
    });
    timePasses();
    EXPECT_EQ(woken, 1);
    EXPECT_EQ(macsim::timers(), std::vector<std::int64_t>{2'000'000'000});
    timePasses();
    EXPECT_EQ(woken, 2);
}

TEST_F(MacClockTest, dropsTheWaitThatANewOneReplaces) {
    int first = 0, second = 0;
    clock->wait(1, counting(first));
    clock->wait(3, counting(second));
    EXPECT_EQ(macsim::timers(), std::vector<std::int64_t>{3'000'000'000});
    timePasses();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST_F(MacClockTest, doesNotWakeAfterItWasCancelledOrDestroyed) {
    int woken = 0;
    clock->wait(1, counting(woken));
    clock->cancel();
    timePasses();
    clock->wait(1, counting(woken));
    clock.reset();
    timePasses();
    EXPECT_EQ(woken, 0);
}

// The timer is looked at first, the posted work comes next, and the wake that the timer has set off last. Under a
// kernel queue this depends on the reactor, hence the timer that stands in for it.
TEST_F(MacClockTest, doesNotWakeWhenItIsCancelledWithTheWakeOnItsWay) {
    macsim::refuse("kqueue");
    int woken = 0;
    clock->wait(0, counting(woken));
    boost::asio::post(context, [this] { clock->cancel(); });
    context.poll();
    EXPECT_EQ(woken, 0);
}

TEST_F(MacClockTest, endsAWaitOfNoTimeAtOnceAndOfEndlessTimeSomeDay) {
    int woken = 0;
    for (const double seconds : {0.0, -5.0, std::nan(""), 1e-12}) {
        clock->wait(seconds, counting(woken));
        EXPECT_EQ(macsim::timers(), std::vector<std::int64_t>{1}) << seconds;
    }
    for (const double seconds : {1e300, std::numeric_limits<double>::infinity()}) {
        clock->wait(seconds, counting(woken));
        EXPECT_EQ(macsim::timers(), std::vector<std::int64_t>{1'000'000'000'000'000'000}) << seconds;
    }
}

TEST_F(MacClockTest, stillWakesWhenTheSystemHasNoQueue) {
    for (const char* call : {"kqueue", "kevent"}) {
        macsim::reset();
        macsim::refuse(call);
        int woken = 0;
        clock->wait(0.001, counting(woken));
        EXPECT_TRUE(macsim::timers().empty());
        context.restart();
        context.run_for(std::chrono::seconds(5));
        EXPECT_EQ(woken, 1) << call;
    }
}
