#include "app/pages/HistoryPageText.hpp"

#include "app/pages/HistoryExporting.hpp"
#include "app/widgets/Strings.hpp"
#include "tests/TimeZone.hpp"
#include "tests/history/StoreHarness.hpp"

#include <gtest/gtest.h>

#include <QFile>
#include <QThreadPool>

#include <algorithm>
#include <limits>

namespace ostrivane {
namespace {

constexpr std::int64_t start = 1'700'000'040; // of a minute: 2023-11-14 22:14 UTC

SystemRow row(std::int64_t bucket, std::int64_t res = 60) {
    SystemRow made;
    made.bucket = bucket;
    made.res = res;
    made.cpu = 0.2;
    made.cpuMax = 0.5;
    made.memUsed = 8.0 * (1 << 30);
    made.memUsedMax = made.memUsed;
    return made;
}

const HistoryStrip* stripOf(const std::vector<HistoryStrip>& strips, HistoryMetric metric) {
    const auto found = std::ranges::find(strips, metric, &HistoryStrip::metric);
    return found == strips.end() ? nullptr : &*found;
}

constexpr std::uint64_t total = std::uint64_t(16) << 30;

TEST(HistoryPageTextTest, leavesOutWhatNobodyMeasured) {
    const auto strips = presentStrips({row(start)}, total);
    ASSERT_EQ(strips.size(), 2U) << "traffic of 0 may be traffic that nobody measured";
    EXPECT_EQ(strips[0].metric, HistoryMetric::cpu);
    EXPECT_EQ(strips[1].metric, HistoryMetric::memory);
    EXPECT_TRUE(presentStrips({}, total).empty());
    SystemRow damaged = row(start, 0);
    damaged.netIn = 100;
    EXPECT_TRUE(std::ranges::none_of(presentStrips({damaged}, 0),
                                     [](const HistoryStrip& strip) { return strip.metric == HistoryMetric::cpu; }));
    damaged = row(start);
    damaged.cpu = std::numeric_limits<double>::infinity();
    EXPECT_EQ(presentStrips({damaged}, total).size(), 1U);
}

TEST(HistoryPageTextTest, sumsUpARangeOfRowsOfUnequalLength) {
    SystemRow hour = row(start, 3600);
    hour.cpu = 0.1;
    hour.cpuMax = 0.9;
    hour.powerW = 20;
    hour.batteryPct = 40;
    hour.netIn = 3.6e9;
    hour.cpuTemp = 50;
    hour.cpuTempMax = 91;
    SystemRow minute = row(start + 3600);
    minute.cpu = 0.71;
    minute.batteryPct = 90;
    minute.gpu = 0.25;
    const auto strips = presentStrips({hour, minute}, total);
    const HistoryStrip& cpu = *stripOf(strips, HistoryMetric::cpu);
    EXPECT_EQ(cpu.value, QStringLiteral("11%")) << "weighed by time";
    EXPECT_EQ(cpu.detail, QStringLiteral("peak 90%"));
    const HistoryStrip& network = *stripOf(strips, HistoryMetric::network);
    EXPECT_EQ(network.value, QStringLiteral("3.60 GB"));
    EXPECT_EQ(network.remark, QStringLiteral("in"));
    EXPECT_EQ(network.detail, QStringLiteral("— out")) << "nothing is claimed of the other direction";
    ASSERT_EQ(network.lines.size(), 1U);
    EXPECT_DOUBLE_EQ(network.lines[0].points[0].value, 1e6) << "bytes per second";
    EXPECT_EQ(stripOf(strips, HistoryMetric::power)->detail, QStringLiteral("20.0 Wh"));
    EXPECT_EQ(stripOf(strips, HistoryMetric::power)->value, QStringLiteral("20.0 W")) << "over the time it is known of";
    EXPECT_EQ(stripOf(strips, HistoryMetric::battery)->detail, QStringLiteral("lowest 40%"));
    EXPECT_EQ(stripOf(strips, HistoryMetric::temperature)->detail, QStringLiteral("peak 91 °C"));
    EXPECT_EQ(stripOf(strips, HistoryMetric::gpu)->lines[0].points.size(), 1U);
    EXPECT_EQ(stripOf(strips, HistoryMetric::disk), nullptr);
    EXPECT_EQ(strips.front().metric, HistoryMetric::cpu);
    EXPECT_EQ(strips.back().metric, HistoryMetric::battery);
}

TEST(HistoryPageTextTest, measuresMemoryAgainstTheMachineUnlessItOnceHadMore) {
    const auto axis = [](std::uint64_t bytes) {
        return stripOf(presentStrips({row(start)}, bytes), HistoryMetric::memory)->axis;
    };
    EXPECT_EQ(axis(total).kind, ChartAxis::Kind::fixed);
    EXPECT_EQ(axis(total).label(static_cast<double>(total)), QStringLiteral("16 GB"));
    EXPECT_EQ(axis(std::uint64_t(4) << 30).kind, ChartAxis::Kind::open);
    EXPECT_EQ(axis(0).kind, ChartAxis::Kind::open);
}

TEST(HistoryPageTextTest, showsTheGraphicsTemperatureWhereNoOtherIsKnown) {
    SystemRow warm = row(start);
    warm.gpuTemp = 60;
    const auto strips = presentStrips({warm}, total);
    EXPECT_EQ(stripOf(strips, HistoryMetric::temperature)->name, QStringLiteral("GPU temperature"));
}

TEST(HistoryPageTextTest, tellsWhatWasAtAMoment) {
    const TimeZone zone("UTC0");
    const Date now{static_cast<double>(start) + 7200};
    std::vector<SystemRow> rows{row(start), row(start + 120)};
    const auto strips = presentStrips(rows, total);
    const std::vector<SessionSpan> sessions{
        {QStringLiteral("Release"), Date{start + 30.0}, Date{start + 60.0}},
        {QStringLiteral("Before"), Date{start - 100.0}, Date{static_cast<double>(start)}}};
    EXPECT_EQ(rowAt(rows, start - 1), nullptr);
    EXPECT_EQ(rowAt(rows, start + 59.9), &rows[0]);
    EXPECT_EQ(rowAt(rows, start + 60), nullptr) << "a gap";

    const std::vector<AppMoment> apps{{.appKey = "exe:node", .name = "node\n", .cpu = 1.5, .mem = 0}};
    const MomentText told = presentMoment(strips, &rows[0], start + 10, apps, sessions, now);
    EXPECT_EQ(told.title, QStringLiteral("Yesterday, 22:14"));
    ASSERT_EQ(told.figures.size(), 2U);
    EXPECT_EQ(told.figures[0].value, QStringLiteral("20%"));
    EXPECT_EQ(told.session, QStringLiteral("Session “Release”"));
    ASSERT_EQ(told.apps.size(), 1U);
    EXPECT_EQ(told.apps[0].name, QStringLiteral("node␊")) << "a name cannot break the line";
    EXPECT_EQ(spoken(told), QStringLiteral("Yesterday, 22:14. CPU 20%. Memory 8.00 GB. Session “Release”. Busiest "
                                           "applications: node␊ 150%."));

    EXPECT_EQ(presentMoment(strips, &rows[0], start, std::nullopt, {}, now).apps.at(0).name, QStringLiteral("…"));
    EXPECT_TRUE(presentMoment(strips, &rows[0], start, std::vector<AppMoment>(), {}, now).appsTitle.isEmpty());
    const MomentText gap = presentMoment(strips, nullptr, start + 70, std::nullopt, sessions, now);
    EXPECT_EQ(gap.note, QStringLiteral("Nothing was recorded."));
    EXPECT_TRUE(gap.figures.empty() && gap.apps.empty() && gap.session.isEmpty());
    rows = {row(start - 40, 900)};
    EXPECT_EQ(presentMoment(presentStrips(rows, total), rows.data(), start, {}, {}, now).title,
              QStringLiteral("Yesterday, 22:13 to 22:28"));
}

TEST(HistoryPageTextTest, bandsAreSessionsWhoseEndIsKnownAndTheOneUnderWay) {
    const Date now{1000};
    const std::vector<StoredSession> stored{
        {.id = 1, .name = "whole", .start = Date{100}, .end = Date{200}, .summaryJSON = {}},
        {.id = 2, .name = "cut off", .start = Date{300}, .end = {}, .summaryJSON = {}}};
    const auto spans = sessionSpans(stored, std::pair(std::string("now"), Date{900}), now);
    ASSERT_EQ(spans.size(), 2U);
    EXPECT_EQ(spans[1], (SessionSpan{QStringLiteral("now"), Date{900}, now}));
    const auto bands = sessionBands(spans, 200, 2000);
    ASSERT_EQ(bands.size(), 1U) << "what lies outside of the range is left out";
    EXPECT_EQ(bands[0].name, QStringLiteral("now"));
}

TEST(HistoryPageTextTest, saysHowLongItIsKept) {
    const TimeZone zone("UTC0");
    const Date now{static_cast<double>(start)};
    EXPECT_EQ(keptText(30, now + -31.0 * 86400, now),
              QStringLiteral("Kept on this machine for 30 days · since 14 October"));
    EXPECT_EQ(keptText(1, std::nullopt, now), QStringLiteral("Kept on this machine for 1 day"));
}

TEST(HistoryPageTextTest, dashesInTheTableWhatSumsCannotTell) {
    AppUsageSummary usage{.appKey = "exe:node", .name = "node", .bundleID = {}};
    usage.avgCPU = 0.5;
    usage.activeMinutes = 61;
    const BusyApp app{.usage = &usage};
    std::vector<QString> cells;
    for (const auto& column : busyColumns())
        cells.push_back(column.text(app));
    EXPECT_EQ(cells, (std::vector<QString>{QStringLiteral("node"), QStringLiteral("50%"), QStringLiteral("0 B"),
                                           QStringLiteral("—"), QStringLiteral("—"), QStringLiteral("1h 1m")}));
}

TEST(HistoryExportingTest, writesTheRangeOrSaysWhyNot) {
    TemporaryFolder folder;
    StoreHarness harness{folder.file("history.sqlite")};
    for (int minute = 0; minute < 3; ++minute) {
        SystemSnapshot snapshot = SystemSnapshot::empty(Date{static_cast<double>(start + minute * 60)});
        snapshot.interval = 10;
        harness.ingest(snapshot);
    }
    const auto exported = [](StoreHarness& from, const std::string& path) {
        ExportOutcome outcome;
        exportHistory(*from.store, Date{static_cast<double>(start)}, Date{start + 59.0}, path,
                      [&](ExportOutcome told) { outcome = std::move(told); });
        from.run();
        QThreadPool::globalInstance()->waitForDone();
        return outcome;
    };
    const ExportOutcome good = exported(harness, folder.file("out.csv"));
    EXPECT_FALSE(good.problem);
    EXPECT_EQ(exportTitle(good), QStringLiteral("Exported 1 row to out.csv"));
    QFile file(text(folder.file("out.csv")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().count('\n'), 2);

    const ExportOutcome bad = exported(harness, folder.file("none/out.csv"));
    EXPECT_TRUE(bad.problem);
    EXPECT_EQ(exportTitle(bad), QStringLiteral("The history could not be exported."));
    StoreHarness lost{folder.file("none/history.sqlite")};
    EXPECT_TRUE(exported(lost, folder.file("empty.csv")).problem) << "no file that claims there is no history";
    EXPECT_FALSE(QFile::exists(text(folder.file("empty.csv"))));
}

} // namespace
} // namespace ostrivane
