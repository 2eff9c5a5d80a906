#include "core/model/Calendar.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <optional>
#include <string>

namespace ostrivane {
namespace {

/// The zone of the process, for as long as the object lives.
class Zone {
public:
    explicit Zone(const char* name) {
        if (const char* present = std::getenv("TZ"))
            before = present;
        ::setenv("TZ", name, 1);
        ::tzset();
    }
    ~Zone() {
        before ? ::setenv("TZ", before->c_str(), 1) : ::unsetenv("TZ");
        ::tzset();
    }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;

private:
    std::optional<std::string> before;
};

TEST(Calendar, aDayBeginsAtTheLocalMidnight) {
    const Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(Calendar::startOfDay(Date{1'795'219'200.5}), Date{1'795'215'600}); // 2026-11-21 01:00 there
    EXPECT_EQ(Calendar::startOfDay(Date{1'795'215'600}), Date{1'795'215'600});
    EXPECT_EQ(Calendar::startOfDay(Date{1'795'215'599}), Date{1'795'129'200});
    // 2026-03-29 12:00 in summer time; that day began in winter time.
    EXPECT_EQ(Calendar::startOfDay(Date{1'774'778'400}), Date{1'774'738'800});
    for (const double strange : {-1e15, 1e15, std::numeric_limits<double>::infinity()})
        EXPECT_EQ(Calendar::startOfDay(Date{strange}), Date{strange});
}

} // namespace
} // namespace ostrivane
