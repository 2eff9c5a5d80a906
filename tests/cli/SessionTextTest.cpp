#include "cli/SessionText.hpp"

#include "core/judgement/SessionSummaryJSON.hpp"
#include "tests/cli/PrintedText.hpp"

#include <gtest/gtest.h>

namespace ostrivane::cli {
namespace {

constexpr Date start{1'800'000'000};
constexpr std::string_view hostile = "Evil\x1b[2J\nname";

SessionSummary build() {
    SessionSummary summary;
    summary.name = "Build";
    summary.start = start;
    summary.end = start + 754;
    summary.samples = 700;
    summary.cpu = {.average = 0.35, .peak = 0.98};
    summary.memoryUsed = {.average = 3e9, .peak = 4e9};
    summary.memoryPressurePeak = "Elevated";
    summary.diskWrite = 3'400'000'000;
    summary.apps = {{.key = "exe:cc",
                     .name = std::string(hostile),
                     .avgCPU = 1.5,
                     .cpuSeconds = 1131,
                     .peakMemory = 2'147'483'648,
                     .memoryChange = -1'073'741'824,
                     .energyJ = 7200,
                     .presentFraction = 0.5}};
    summary.processes = {{.pid = 42, .name = "cc1", .app = "Compiler", .cpuSeconds = 12.34, .peakMemory = 1e6}};
    return summary;
}

TEST(SummaryText, tellsWhatWasMeasuredAndLeavesOutTheRest) {
    SessionSummary summary = build();
    const std::string text = summaryText(summary, std::nullopt);
    for (const char* part :
         {"Build\n12 min, ", "Processor   35% on average, 98% at most\n", "; the highest pressure was elevated\n",
          "Disk        — read, 3.4 GB written\n", "150%", "18 min", "-1.00 GB", "2.00 Wh", "50%\n", "12.3 s", "42"})
        EXPECT_TRUE(holds(text, part)) << part << " in\n" << text;
    for (const char* guess : {"Graphics", "Temperature", "Power", "Battery", "swap", "Launched", "Quit"})
        EXPECT_FALSE(holds(text, guess)) << guess << " in\n" << text;
    summary.gpu = {.average = 0.5, .peak = 1};
    summary.cpuTemperature = {.average = 61, .peak = 88};
    summary.systemPower = {.average = 9.5, .peak = 31};
    summary.batteryStart = 88;
    summary.batteryEnd = 81;
    summary.swapPeak = 1'073'741'824;
    summary.launchedApps = {"Firefox", "Writer"};
    const std::string whole = summaryText(summary, std::nullopt);
    for (const char* part :
         {"Graphics    50% on average, 100% at most\n", "61 °C on average, 88 °C at most",
          "9.50 W on average, 31.0 W at most", "88% to 81%", "swap 1.00 GB at most", "Launched    Firefox, Writer\n"})
        EXPECT_TRUE(holds(whole, part)) << part << " in\n" << whole;
    EXPECT_FALSE(holds(whole, "Quit")) << whole;
    for (const int width : {1, 12, 40, 80, 200})
        expectWithin(summaryText(summary, width), width);
}

TEST(SummaryText, guessesNothingOfASessionWithoutAReading) {
    SessionSummary summary = build();
    summary.samples = 0;
    const std::string text = summaryText(summary, 80);
    EXPECT_TRUE(holds(text, "too short for a reading")) << text;
    EXPECT_FALSE(holds(text, "Processor")) << text;
}

TEST(StoredSessionText, saysWhyThereIsNoSummary) {
    StoredSession session{.id = 7, .name = std::string(hostile), .start = start};
    EXPECT_TRUE(holds(storedSessionText(session, std::nullopt), "recorded now, or what recorded it was cut off"));
    EXPECT_TRUE(holds(sessionsText({session}, std::nullopt), "not finished"));
    session.end = start + 3660;
    session.summaryJSON = "{}";
    EXPECT_TRUE(holds(storedSessionText(session, std::nullopt), "cannot be read"));
    EXPECT_TRUE(holds(sessionsText({session}, std::nullopt), "1h 1m"));
    session.summaryJSON = sessionSummaryJSON(build());
    EXPECT_EQ(storedSessionText(session, 80), summaryText(build(), 80));
    expectWithin(sessionsText({session}, 60), 60);
}

} // namespace
} // namespace ostrivane::cli
