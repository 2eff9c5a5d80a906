#include "core/sampling/platform/NettopParser.hpp"
#include "core/sampling/platform/PSParser.hpp"

#include "tests/TemporaryFolder.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <limits>

using namespace ostrivane;

namespace {

constexpr std::uint64_t highest = std::numeric_limits<std::uint64_t>::max();

std::string recorded(const std::string& name) {
    const std::string text = contentOf(std::string(OSTRIVANE_FIXTURES) + "/macos/" + name);
    EXPECT_FALSE(text.empty()) << name;
    return text;
}

TEST(Nettop, readsASampleAndAddsLinesOfOneProcess) {
    const auto totals = NettopParser::parse(recorded("nettop.txt"));
    EXPECT_EQ(totals.size(), 11U);
    EXPECT_EQ(totals.at(812), (TrafficTotals{1874301235, 88122051}));
    EXPECT_EQ(totals.at(1234), (TrafficTotals{10, 20})) << "a name with points";
    EXPECT_EQ(totals.at(2210), (TrafficTotals{733912, 412008})) << "a name with blanks and a bracket";
    EXPECT_EQ(totals.at(1), (TrafficTotals{0, 0}));
}

TEST(Nettop, leavesOutWhatItCannotRead) {
    EXPECT_EQ(NettopParser::parse(recorded("nettop-odd.txt")),
              (PidMap<TrafficTotals>{{79, {highest, 0}}, {82, {7, 8}}}));
    for (const std::string& text : {recorded("nettop-header-only.txt"), std::string(), std::string("\n\n"),
                                    std::string("launchd.1,2,3,"), std::string("\nlaunchd.1,2,3,\n\n")})
        EXPECT_TRUE(NettopParser::parse(text).empty()) << text; // the first line that is not empty is the header
    EXPECT_EQ(NettopParser::parse("h\na.5,1,2"), (PidMap<TrafficTotals>{{5, {1, 2}}})) << "cut behind the last figure";
    EXPECT_EQ(NettopParser::parse("h\na.5,18446744073709551615,1,\na.5,2,1,"),
              (PidMap<TrafficTotals>{{5, {highest, 2}}}))
        << "a sum that does not fit";
}

TEST(PS, readsASample) {
    const auto totals = PSParser::parse(recorded("ps.txt"));
    EXPECT_EQ(totals.size(), 10U);
    EXPECT_EQ(totals.at(9001), (SystemProcessTotals{742567, 20480}));
    EXPECT_EQ(totals.at(603), (SystemProcessTotals{0, 0}));
    EXPECT_EQ(totals.at(1), (SystemProcessTotals{28187, 14624}));
}

TEST(PS, leavesOutLinesItCannotRead) {
    EXPECT_EQ(
        PSParser::parse(recorded("ps-odd.txt")),
        (PidMap<SystemProcessTotals>{
            {10, {9378450, 1000}}, {11, {18450, 1000}}, {12, {450, 1000}}, {16, {100, 1000}}, {17, {100, 1000}}}));
    EXPECT_TRUE(PSParser::parse("").empty());
    EXPECT_TRUE(PSParser::parse("1 0:01.00 18446744073709551616\n3000000000 0:01.00 5\n1 nan 5\n").empty());
}

TEST(PS, readsTimesToTheHundredth) {
    const struct {
        const char* text;
        std::optional<std::uint64_t> want;
    } cases[] = {
        {"1-02:03:04.50", 9378450},
        {"03:04.50", 18450},
        {"123:45.67", 742567},
        {"0:00.29", 29},
        {"0:04.35", 435},
        {"0", 0},
        {"-5", 500},
        {"0-0:05", 500},
        {"106751-23:59:59.99", 922337279999},
        {"", std::nullopt},
        {":", std::nullopt},
        {"1-", std::nullopt},
        {"x", std::nullopt},
        {"1:x", std::nullopt},
        {"nan", std::nullopt},
        {"inf", std::nullopt},
        {"1:inf", std::nullopt},
        {"1e999", std::nullopt},
        {"1e18", std::nullopt},
        {"0--5", std::nullopt},
        {"9223372036854775807-0", std::nullopt},
        {"0x10", std::nullopt},
    };
    for (const auto& c : cases)
        EXPECT_EQ(PSParser::parseCPUTime(c.text), c.want) << c.text;
    std::string endless = "1e300";
    for (int i = 0; i < 2000; ++i)
        endless += ":1";
    EXPECT_FALSE(PSParser::parseCPUTime(endless));
}

TEST(PS, hundredthsNeverSlip) {
    for (std::uint64_t centis = 0; centis < 600'000; centis += 7) {
        const std::string text = fmt::format("{}:{:02}.{:02}", centis / 6000, centis / 100 % 60, centis % 100);
        ASSERT_EQ(PSParser::parseCPUTime(text), centis) << text;
    }
}

} // namespace
