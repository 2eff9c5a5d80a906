#include "app/pages/SessionsText.hpp"

#include "core/judgement/SessionSummaryJSON.hpp"
#include "tests/TimeZone.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

const Date now{1'700'000'000}; // 2023-11-14 22:13:20 UTC

SessionSummary summary() {
    SessionSummary made;
    made.name = "Release 2.4";
    made.start = now + -7200;
    made.end = now + -3600;
    made.samples = 4812;
    made.cpu = {.average = 0.34, .peak = 0.98};
    made.memoryUsed = {.average = 22.0 * (1 << 30), .peak = 26.0 * (1 << 30)};
    made.memoryPressurePeak = "Elevated";
    made.diskWrite = 138e9;
    made.batteryStart = 96;
    made.batteryEnd = 62;
    made.launchedApps = {"Figma", "Ollama"};
    made.apps = {{.key = "exe:node", .name = "node", .avgCPU = 1.42, .memoryChange = -310.0 * (1 << 20)}};
    return made;
}

StoredSession stored(const SessionSummary& of) {
    return {.id = 7, .name = of.name, .start = of.start, .end = of.end, .summaryJSON = sessionSummaryJSON(of)};
}

class SessionsTextTest : public testing::Test {
    TimeZone zone{"UTC0"};
};

TEST_F(SessionsTextTest, showsTwelveFiguresAndADashForEachThatNobodyMeasured) {
    const SessionText shown = presentSession(stored(summary()), now);
    EXPECT_EQ(shown.name, QStringLiteral("Release 2.4"));
    EXPECT_EQ(shown.when, QStringLiteral("Today, 20:13 to 21:13 · 1h · 4812 samples"));
    EXPECT_TRUE(shown.problem.isEmpty());
    EXPECT_EQ(shown.opened, QStringLiteral("Figma, Ollama"));
    EXPECT_TRUE(shown.quit.isEmpty());
    ASSERT_EQ(shown.stats.size(), 12U);
    const auto said = [&](std::size_t index) { return shown.stats[index].value + u' ' + shown.stats[index].remark; };
    EXPECT_EQ(said(0), QStringLiteral("34% peak 98%"));
    EXPECT_EQ(said(1), QStringLiteral("22.0 GB peak 26.0 GB"));
    EXPECT_EQ(said(6), QStringLiteral("Elevated at worst"));
    EXPECT_EQ(said(7), QStringLiteral("96% to 62%"));
    EXPECT_EQ(said(9), QStringLiteral("138 GB "));
    for (const std::size_t index : {2U, 3U, 4U, 8U, 10U, 11U}) // GPU, temperature, power, read, received, sent
        EXPECT_EQ(said(index), QStringLiteral("— ")) << shown.stats[index].caption.toStdString();
    ASSERT_TRUE(shown.summary);
    const SessionSummary::AppLine* line = &shown.summary->apps.at(0);
    const auto columns = sessionAppColumns([](const std::string&) { return std::nullopt; });
    EXPECT_EQ(columns[1].text(line), QStringLiteral("142%"));
    EXPECT_EQ(columns[3].text(line), QStringLiteral("−310 MB"));
    EXPECT_EQ(columns[5].text(line), QStringLiteral("—"));
}

TEST_F(SessionsTextTest, saysWhyThereAreNoFigures) {
    SessionSummary brief = summary();
    brief.samples = 0;
    EXPECT_EQ(presentSummary(brief, now).problem,
              QStringLiteral("It was too short for a reading: nothing is known of what it used."));
    EXPECT_TRUE(presentSummary(brief, now).stats.empty());
    StoredSession damaged = stored(summary());
    damaged.summaryJSON = "{\"name\": 3";
    const SessionText unreadable = presentSession(damaged, now);
    EXPECT_EQ(unreadable.problem, QStringLiteral("Its summary cannot be read."));
    EXPECT_EQ(unreadable.when, QStringLiteral("Today, 20:13 to 21:13 · 1h"));
    EXPECT_FALSE(unreadable.summary);
    EXPECT_EQ(presentSessionRow(damaged, now).duration, QStringLiteral("1h"));

    StoredSession open = damaged;
    open.end.reset();
    open.summaryJSON.reset();
    EXPECT_EQ(presentSessionRow(open, now).duration, QStringLiteral("Not finished"));
    EXPECT_EQ(presentSession(open, now).when, QStringLiteral("Since Today, 20:13"));
    EXPECT_FALSE(presentSession(open, now).problem.isEmpty());
}

TEST_F(SessionsTextTest, tellsOfTheOneUnderWayWhatIsKnown) {
    SessionSummary soFar = summary();
    soFar.name = "Refactoring\u202e";
    RecordingText shown = presentRecording(soFar);
    EXPECT_EQ(shown.title, QStringLiteral("Recording “Refactoring<U+202E>”"));
    EXPECT_EQ(shown.figures, QStringLiteral("for 1h · CPU 34% average, 98% peak · 22.0 GB memory"));
    soFar.systemPower = SessionSummary::Stat{.average = 19.8, .peak = 41};
    EXPECT_TRUE(presentRecording(soFar).figures.endsWith(QStringLiteral(" · 19.8 W power")));
    soFar.samples = 0;
    EXPECT_EQ(presentRecording(soFar).figures, QStringLiteral("for 1h"));
}

TEST_F(SessionsTextTest, knowsItsRowByNameAndWholeSecondOfTheBeginning) {
    StoredSession row = stored(summary());
    EXPECT_TRUE(isOf(row, row.name, row.start + 0.7)) << "the history keeps whole seconds";
    EXPECT_FALSE(isOf(row, "Other", row.start));
    EXPECT_FALSE(isOf(row, row.name, row.start + 1));
}

TEST_F(SessionsTextTest, asksBeforeItDeletes) {
    const MessageText question = deleteQuestion(QStringLiteral("Release 2.4"));
    EXPECT_EQ(question.heading, QStringLiteral("Delete “Release 2.4”?"));
    EXPECT_EQ(question.kind, ButtonKind::confirming);
    EXPECT_LT(deleteQuestion(QString(4096, u'x')).heading.size(), 100);
}

} // namespace
} // namespace ostrivane
