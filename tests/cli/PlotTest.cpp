#include "cli/Plot.hpp"

#include "core/model/Formatters.hpp"
#include "core/model/Text.hpp"
#include "tests/TimeZone.hpp"

#include <gtest/gtest.h>

namespace ostrivane::cli {
namespace {

using Lines = std::vector<std::string>;

std::string share(double value) {
    return Formatters::percent(value);
}

Figure figure(std::vector<Piece> pieces) {
    return {.title = "Load", .words = share, .leastTop = 0.1, .pieces = std::move(pieces)};
}

Piece piece(double start, double length, double value) {
    return {.start = start, .length = length, .value = value, .highest = value};
}

constexpr Period period{Date{0}, Date{80}};
constexpr int width = 20; // 8 of them drawn, 10 s each

TEST(Plot, tellsAGapFromAZero) {
    const Figure load = figure({piece(0, 10, 0), piece(20, 20, 0.5), piece(60, 10, 0.25)});
    EXPECT_EQ(plotLines(load, period, width, Glyphs::blocks)[1], "       50% ┤  ██    ");
    EXPECT_EQ(plotLines(load, period, width, Glyphs::blocks)[2], "        0% ┤▁ ██  █ ");
    EXPECT_EQ(plotLines(load, period, width, Glyphs::ascii)[2], "        0% |. ##  # ");
    EXPECT_EQ(plotLines(load, period, 80, Glyphs::blocks)[0], "Load        mean 31%, lowest 0%, highest 50%");
    EXPECT_EQ(plotLines(figure({piece(90, 10, 1)}), period, width, Glyphs::blocks), Lines());
}

TEST(Plot, endsItsAxisAtARoundNumber) {
    const auto topOf = [](double value, bool isInBinary) {
        Figure load = figure({piece(0, 10, value)});
        load.isInBinary = isInBinary;
        load.words = [](double words) { return Formatters::decimal(words, 2); };
        const std::string line = plotLines(load, period, width, Glyphs::ascii)[1];
        return line.substr(0, line.find(" |"));
    };
    EXPECT_EQ(topOf(0, false), "      0.10");
    EXPECT_EQ(topOf(0.2, false), "      0.20");
    EXPECT_EQ(topOf(0.21, false), "      0.50");
    EXPECT_EQ(topOf(6, false), "     10.00");
    EXPECT_EQ(topOf(5, true), "      8.00");
}

TEST(Plot, keepsToTheWidth) {
    const Figure load = figure({piece(0, 80, 0.5)});
    for (const int narrow : {1, 5, 12, 13, 40, 200}) {
        for (const std::string& line : plotLines(load, period, narrow, Glyphs::blocks))
            EXPECT_LE(Text::columns(line), narrow) << line;
        for (const std::string& line : timeAxis(period, narrow, Glyphs::ascii))
            EXPECT_LE(Text::columns(line), narrow) << line;
    }
}

TEST(TimeAxis, marksRoundTimesOfTheUsersClock) {
    const TimeZone zone("IST-05:30");
    constexpr double midnight = 1795199400; // 2026-11-21 00:00 there
    const Lines hours = timeAxis({Date{midnight - 3600}, Date{midnight + 7200}}, 12 + 30, Glyphs::ascii);
    EXPECT_EQ(hours[0], "           +---------+---------+---------+");
    EXPECT_EQ(hours[1], "                   11-21     01:00");
    const Lines days = timeAxis({Date{midnight}, Date{midnight + 2 * 86400}}, 12 + 32, Glyphs::blocks);
    EXPECT_EQ(days[0].substr(days[0].find("└")), "└───────┬───────┬───────┬───────┬");
    EXPECT_EQ(days[1], "                 12:00   11-22   12:00");
}

TEST(TimeAxis, doesNotLoseAnHourToSummerTime) {
    const TimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    constexpr double start = 1774652400; // 2026-03-28 00:00 there, a day before the clocks change
    const Lines days = timeAxis({Date{start}, Date{start + 5 * 86400}}, 12 + 120, Glyphs::ascii);
    EXPECT_NE(days[1].find("03-31"), std::string::npos) << days[1];
    const Lines hours = timeAxis({Date{start + 86400}, Date{start + 90000 + 7200}}, 12 + 30, Glyphs::ascii);
    EXPECT_EQ(hours[1].find("02:00"), std::string::npos) << "there is no such time on that day: " << hours[1];
}

TEST(Plot, drawsInWhatTheLocaleHas) {
    EXPECT_EQ(glyphsOf("", "", "en_GB.UTF-8"), Glyphs::blocks);
    EXPECT_EQ(glyphsOf("", "C.utf8", "C"), Glyphs::blocks);
    EXPECT_EQ(glyphsOf("POSIX", "", "en_GB.UTF-8"), Glyphs::ascii);
    EXPECT_EQ(glyphsOf("", "", ""), Glyphs::ascii);
}

} // namespace
} // namespace ostrivane::cli
