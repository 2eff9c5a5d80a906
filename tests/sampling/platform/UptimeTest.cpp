#include "core/sampling/platform/Uptime.hpp"

#include <gtest/gtest.h>

using namespace ostrivane;

TEST(Uptime, countsTheTimeAsleepWhereTheBootTimeIsKnown) {
    EXPECT_EQ(uptimeSince(Date{1000}, Date{1600.5}, 200), 600.5);
    EXPECT_EQ(uptimeSince(Date{1000}, Date{1600.5}, std::nullopt), 600.5);
}

TEST(Uptime, takesTheClockThatStopsWhenTheBootTimeIsNoUse) {
    EXPECT_EQ(uptimeSince(std::nullopt, Date{1600}, 200), 200);
    EXPECT_EQ(uptimeSince(Date{1600}, Date{1600}, 200), 200);
    EXPECT_EQ(uptimeSince(Date{2000}, Date{1600}, 200), 200);
    EXPECT_FALSE(uptimeSince(Date{2000}, Date{1600}, std::nullopt));
    EXPECT_FALSE(uptimeSince(std::nullopt, Date{1600}, std::nullopt));
}
