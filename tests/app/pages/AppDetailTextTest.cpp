#include "app/pages/AppDetailText.hpp"
#include "app/pages/AppHistoryText.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace ostrivane {

namespace {

const std::string key = "/opt/editor/editor.desktop";

AppState stateWith(ApplicationSnapshot app, std::vector<ProcessSnapshot> processes = {}) {
    auto snapshot = std::make_shared<SystemSnapshot>(SystemSnapshot::empty(Date{1'700'000'000}));
    snapshot->applications.push_back(std::move(app));
    snapshot->processes = std::move(processes);
    AppState state;
    state.snapshot = std::move(snapshot);
    state.hasFirstSample = true;
    return state;
}

ApplicationSnapshot editor() {
    ApplicationSnapshot app;
    app.key = key;
    app.name = "Editor";
    app.bundlePath = key;
    app.pids = {7, 8};
    app.cpu = 0.64;
    app.memory = 1024UL * 1024 * 1024;
    app.powerW = 2.1;
    app.threads = 218;
    app.startTime = Date{1'700'000'000 - 108'000};
    return app;
}

std::vector<std::string> values(const AppDetailText& shown) {
    std::vector<std::string> all;
    for (const Stat& stat : shown.stats)
        all.push_back(stat.value.toStdString());
    return all;
}

AppRow row(std::int64_t bucket, std::int64_t res, double cpu, double memMax, double energyJ = 0) {
    return {.bucket = bucket,
            .res = res,
            .appKey = key,
            .cpu = cpu,
            .cpuMax = cpu * 2,
            .mem = memMax / 2,
            .memMax = memMax,
            .energyJ = energyJ};
}

std::vector<std::string> figures(const std::vector<AppRow>& rows) {
    std::vector<std::string> all;
    for (const LegendEntry& entry : presentAppHistory(&rows, HistoryRange::days7).figures)
        all.push_back((entry.name + QLatin1Char(' ') + entry.value).toStdString());
    return all;
}

using Words = std::vector<std::string>;

} // namespace

TEST(AppDetailText, tellsWhatRunsAndWhatItUses) {
    AppState state = stateWith(editor());
    AppDetailText shown = presentAppDetail(state, state.app(key));
    EXPECT_EQ(shown.summary, QStringLiteral("2 processes · running for 1d 6h"));
    EXPECT_EQ(values(shown), (Words{"64%", "1.00 GB", "2.10 W", "218"}));

    ApplicationSnapshot quiet = editor();
    quiet.powerW.reset();
    quiet.startTime.reset();
    quiet.threads = 0; // nothing that runs has none: nobody told
    quiet.pids = {7};
    state = stateWith(quiet);
    shown = presentAppDetail(state, state.app(key));
    EXPECT_EQ(shown.summary, QStringLiteral("1 process"));
    EXPECT_EQ(values(shown), (Words{"64%", "1.00 GB", "Unavailable", "Unavailable"}));
}

TEST(AppDetailText, showsNoFigureThatNobodyMeasured) {
    AppState state = stateWith(editor());
    EXPECT_EQ(presentAppDetail(state, nullptr).summary, QStringLiteral("Unavailable"));
    EXPECT_EQ(values(presentAppDetail(state, nullptr)), Words(4, "Unavailable"));
    state.hasFirstSample = false;
    EXPECT_EQ(values(presentAppDetail(state, state.app(key))), Words(4, "…"));

    ProcessSnapshot hidden;
    hidden.appKey = key;
    hidden.isRestricted = true;
    state = stateWith(editor(), {hidden, hidden});
    const Words shown = values(presentAppDetail(state, state.app(key)));
    EXPECT_EQ(shown[0], "Unavailable");
    EXPECT_EQ(shown[1], "Unavailable");
}

TEST(AppHead, outlivesTheApplication) {
    const AppState running = stateWith(editor());
    const AppHead head = appHead(running, key, std::nullopt);
    EXPECT_EQ(head.name, "Editor");
    EXPECT_EQ(head.revealPath, key);
    ApplicationSnapshot other = editor();
    other.key = "exe:other";
    const AppState gone = stateWith(other);
    EXPECT_EQ(appHead(gone, key, head), head);
    EXPECT_EQ(appHead(gone, key, std::nullopt).name, "editor.desktop");
    const AppHead another{.key = "exe:another", .name = "Another", .bundlePath = {}, .revealPath = {}};
    EXPECT_EQ(appHead(gone, key, another).name, "editor.desktop"); // what was known is of another one
}

TEST(AppProcessColumns, sortWhatIsNotKnownBelowAllElse) {
    ProcessSnapshot process;
    process.isRestricted = true;
    for (const std::size_t column : {2U, 3U}) {
        EXPECT_EQ(appProcessColumns()[column].text(&process), QStringLiteral("—"));
        EXPECT_TRUE(std::holds_alternative<std::monostate>(appProcessColumns()[column].sortKey(&process)));
    }
}

TEST(AppHistoryText, waitsForTwoRows) {
    const QString note = QStringLiteral("History for this app builds up as Ostrivane runs.");
    const std::vector<AppRow> none;
    const std::vector<AppRow> one{row(600, 60, 1, 1)};
    const std::vector<AppRow> two{row(600, 60, 1, 1), row(660, 60, 1, 1)};
    EXPECT_EQ(presentAppHistory(&none, HistoryRange::hours12).note, note);
    EXPECT_EQ(presentAppHistory(&one, HistoryRange::hours12).note, note);
    EXPECT_EQ(presentAppHistory(&two, HistoryRange::hours12).note, QString());
    EXPECT_EQ(presentAppHistory(nullptr, HistoryRange::hours12).note, QString()); // not yet known is not empty
    EXPECT_EQ(presentAppHistory(nullptr, HistoryRange::days30).cpuTitle, QStringLiteral("CPU over 30 days"));
    EXPECT_EQ(presentAppHistory(nullptr, HistoryRange::hours12).memoryTitle, QStringLiteral("Memory over 12 hours"));
}

TEST(AppHistoryText, weighsRowsByTheirLengthAndSumsEnergyInWattHours) {
    const double gigabyte = 1024.0 * 1024 * 1024;
    EXPECT_EQ(figures({row(0, 3600, 0.2, gigabyte, 7200), row(3600, 900, 1.2, 3 * gigabyte, 3600),
                       row(4500, 900, 1.2, 2 * gigabyte)}),
              (Words{"Average 53%", "Peak 3.00 GB", "Energy 3.00 Wh"}));
    EXPECT_EQ(figures({row(0, 60, 0.2, 2048), row(60, 60, 0.2, 1024)}),
              (Words{"Average 20%", "Peak 2 KB", "Energy —"}));
}

TEST(AppHistoryText, drawsRowsWhereTheyBeginAndAsLongAsTheyAre) {
    const std::vector<AppRow> rows{row(3600, 900, 0.5, 4096), row(9000, 60, 1.5, 8192)};
    EXPECT_EQ(appCPULine(rows).points,
              (std::vector<HistoryPoint>{{.time = 3600, .length = 900, .value = 0.5, .peak = 1.0},
                                         {.time = 9000, .length = 60, .value = 1.5, .peak = 3.0}}));
    EXPECT_EQ(appMemoryLine(rows).points[1], (HistoryPoint{.time = 9000, .length = 60, .value = 4096, .peak = 8192}));
    EXPECT_EQ(appMemoryLine(rows).text(8192), QStringLiteral("8 KB"));
}

} // namespace ostrivane
