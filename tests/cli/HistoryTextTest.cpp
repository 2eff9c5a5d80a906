#include "cli/HistoryText.hpp"

#include "tests/cli/PrintedText.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace ostrivane::cli {
namespace {

constexpr Date now{1'800'000'000};
constexpr std::string_view hostile = "Evil\x1b[2J\n\xff\xfename";

std::vector<SystemRow> rows() {
    std::vector<SystemRow> rows(2);
    for (SystemRow& row : rows)
        row.res = 60;
    rows[0].bucket = 1'799'996'400;
    rows[0].cpu = 0.5;
    rows[0].cpuMax = 0.75;
    rows[0].diskRead = 60'000'000;
    rows[1].bucket = 1'799'999'940;
    rows[1].gpu = 0.25;
    return rows;
}

AppUsageSummary application(std::string key, std::string name) {
    AppUsageSummary summary;
    summary.appKey = std::move(key);
    summary.name = std::move(name);
    return summary;
}

TEST(HistoryRows, showWhatTheRowsTellAndNothingElse) {
    const std::string text = rowsText(rows(), HistoryRange::hour1, now, false, {.width = 100});
    for (const char* part : {"The last 1 hour up to", "Samples cover 2 min\n", "mean 25%, lowest 0%, highest 75%",
                             "highest 1.0 MB/s", "Graphics    mean 25%"})
        EXPECT_TRUE(holds(text, part)) << part << " in\n" << text;
    for (const char* part : {"Battery", "Temperature", "Fans"})
        EXPECT_FALSE(holds(text, part)) << part;
    EXPECT_EQ(rowsText({}, HistoryRange::days7, now, true, {}), "Nothing is known of the last 7 days.\n");
    const std::string table = rowsText(rows(), HistoryRange::hour1, now, true, {});
    const auto lines = Text::lines(table);
    EXPECT_TRUE(lines[lines.size() - 12].find(" 50% ") != std::string_view::npos) << table;
    EXPECT_TRUE(lines[lines.size() - 6].find("0%") == std::string_view::npos) << "a gap is no zero\n" << table;
    for (const int width : {20, 40, 80})
        expectWithin(rowsText(rows(), HistoryRange::hour1, now, true, {.width = width, .glyphs = Glyphs::ascii}),
                     width);
}

TEST(HistoryTop, survivesHostileNamesAndAnyWidth) {
    AppUsageSummary evil = application("exe:evil", std::string(hostile) + std::string(100, 'w'));
    evil.avgCPU = 1.5;
    evil.energyJ = 7200;
    evil.diskWrite = std::numeric_limits<double>::infinity();
    evil.activeMinutes = 90;
    const std::string whole = topText({evil, application("system", "System")}, HistoryRange::days7, std::nullopt);
    for (const char* part : {"150%", "2.00 Wh", "1h 30m"})
        EXPECT_TRUE(holds(whole, part)) << part << " in\n" << whole;
    EXPECT_TRUE(Text::lines(whole)[2].ends_with("—")) << "0 is what the rows hold where no energy is told of";
    for (const int width : {20, 40, 80, 150})
        expectWithin(topText({evil}, HistoryRange::days7, width), width);
    EXPECT_TRUE(holds(topText({evil}, HistoryRange::days7, 40), "150%")) << "the first figures stay";
    EXPECT_EQ(Text::lines(topText({evil}, HistoryRange::days7, 40)).size(), 2u);
}

TEST(HistoryApplication, isFoundByKeyOrByTheOnlyOneOfItsName) {
    const std::vector<AppUsageSummary> known = {application("/Apps/Writer", "Writer"), application("exe:sh", "sh"),
                                                application("/opt/sh", "SH"), application("sh", "Shell")};
    const auto meant = [&](const char* wanted) { return meantApplication(known, wanted, HistoryRange::hours12); };
    EXPECT_EQ(meant("writer").application, &known[0]);
    EXPECT_EQ(meant("sh").application, &known[3]) << "a key goes before a name";
    EXPECT_EQ(meant("Sh").application, nullptr);
    EXPECT_EQ(meant("Sh").problem, "Sh: 2 applications have this name; ask by key: \"exe:sh\" \"/opt/sh\"");
    EXPECT_TRUE(holds(meant("none").problem, "history top --range 12H --json"));
    AppRow row;
    row.bucket = 1'799'999'940;
    row.res = 60;
    row.netIn = 120'000;
    ApplicationHistory history{application("exe:evil", std::string(hostile)), {row}};
    EXPECT_TRUE(holds(applicationText(history, HistoryRange::hour1, now, {}), "highest 2.0 KB/s"));
    expectWithin(applicationText(history, HistoryRange::hour1, now, {.width = 40}), 40);
}

} // namespace
} // namespace ostrivane::cli
