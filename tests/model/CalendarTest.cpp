#include "core/model/Calendar.hpp"

#include "tests/TimeZone.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace ostrivane {
namespace {

TEST(Calendar, aDayBeginsAtTheLocalMidnight) {
    const TimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(Calendar::startOfDay(Date{1'795'219'200.5}), Date{1'795'215'600}); // 2026-11-21 01:00 there
    EXPECT_EQ(Calendar::startOfDay(Date{1'795'215'600}), Date{1'795'215'600});
    EXPECT_EQ(Calendar::startOfDay(Date{1'795'215'599}), Date{1'795'129'200});
    // 2026-03-29 12:00 in summer time; that day began in winter time.
    EXPECT_EQ(Calendar::startOfDay(Date{1'774'778'400}), Date{1'774'738'800});
    for (const double strange : {-1e15, 1e15, std::numeric_limits<double>::infinity()})
        EXPECT_EQ(Calendar::startOfDay(Date{strange}), Date{strange});
}

TEST(Calendar, aMidnightThatComesTwiceCountsOnce) {
    const TimeZone zone("CST5CDT,M3.2.0/0,M11.1.0/1"); // Havana: an hour after midnight it is midnight again
    const Date first{1'730'606'400};                   // 2024-11-03 00:00 in summer time
    for (const double later : {0.0, 1800.0, 3600.0, 5400.0, 80'000.0})
        EXPECT_EQ(Calendar::startOfDay(first + later), first) << later;
    EXPECT_EQ(Calendar::startOfDay(first + 25 * 3600), first + 25 * 3600);
    const Date skipped{1'710'046'800}; // 2024-03-10 01:00 in summer time, before which there was no midnight
    EXPECT_LE(Calendar::startOfDay(skipped + 7200), skipped);
    EXPECT_GT(Calendar::startOfDay(skipped + 7200), skipped + -3601);
}

} // namespace
} // namespace ostrivane
