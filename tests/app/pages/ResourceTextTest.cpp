#include "app/pages/AppShareTables.hpp"
#include "app/pages/CPUTables.hpp"
#include "app/pages/CPUText.hpp"
#include "app/pages/GPUText.hpp"
#include "app/pages/HistoryPoints.hpp"
#include "app/pages/MemoryText.hpp"
#include "app/pages/RangePicker.hpp"

#include "app/model/AppState.hpp"
#include "core/model/PlatformWords.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>

namespace ostrivane {
namespace {

constexpr std::uint64_t gigabyte = std::uint64_t(1) << 30;
constexpr double megabyte = 1024.0 * 1024;

/// A state whose latest snapshot this is, as the model would have it.
AppState stateOf(SystemSnapshot snapshot) {
    AppState state;
    snapshot.interval = 2;
    state.live.add(snapshot);
    state.hasFirstSample = true;
    state.snapshot = std::make_shared<SystemSnapshot>(std::move(snapshot));
    return state;
}

SystemSnapshot machine() {
    return SystemSnapshot::empty(Date{1'700'000'000});
}

std::string valueOf(const std::vector<KeyValue>& lines, const char* key) {
    for (const KeyValue& line : lines)
        if (line.key == QLatin1String(key))
            return line.value.toStdString();
    return "no such line";
}

template <class Row>
std::string cellOf(const std::vector<TableColumn<Row>>& columns, std::string_view id, const Row& row) {
    for (const TableColumn<Row>& column : columns)
        if (column.id == id)
            return column.text(row).toStdString();
    return "no such column";
}

TEST(CPUTextTest, TellsKindsOfCoresApartAndTheirMeans) {
    SystemSnapshot snapshot = machine();
    snapshot.cpu.brand = "Chip";
    snapshot.cpu.performanceCoreCount = 1;
    snapshot.cpu.efficiencyCoreCount = 2;
    snapshot.cpu.logicalCoreCount = 3;
    snapshot.cpu.cores = {{.id = 0, .kind = CoreLoad::Kind::efficiency, .usage = 0.2},
                          {.id = 1, .kind = CoreLoad::Kind::efficiency, .usage = 0.4},
                          {.id = 2, .kind = CoreLoad::Kind::performance, .usage = 0.9}};
    const CPUText shown = presentCPU(stateOf(snapshot), PlatformWords::Linux);
    EXPECT_EQ(shown.subtitle.toStdString(), "Chip · 1 performance and 2 efficiency cores");
    ASSERT_EQ(shown.cores.size(), 3U);
    EXPECT_EQ(shown.cores[1].label.toStdString(), "E1");
    EXPECT_EQ(shown.cores[1].series, Series::s3);
    EXPECT_EQ(shown.cores[2].label.toStdString(), "P2");
    EXPECT_EQ(shown.cores[2].loads, std::vector<double>{0.9});
    ASSERT_EQ(shown.groups.size(), 2U);
    EXPECT_EQ(shown.groups[0].value.toStdString(), "30%");
    EXPECT_EQ(shown.groups[1].value.toStdString(), "90%");

    snapshot.cpu.cores = {{.id = 0, .usage = 0.5}};
    snapshot.cpu.performanceCoreCount = 0;
    snapshot.cpu.efficiencyCoreCount = 0;
    snapshot.cpu.logicalCoreCount = 1;
    snapshot.cpu.brand.clear();
    const CPUText plain = presentCPU(stateOf(snapshot), PlatformWords::Linux);
    EXPECT_EQ(plain.subtitle.toStdString(), "1 core");
    EXPECT_EQ(plain.cores.front().label.toStdString(), "C0");
}

TEST(CPUTextTest, GuessesNothing) {
    AppState state = stateOf(machine());
    const CPUText shown = presentCPU(state, PlatformWords::macOS);
    EXPECT_EQ(valueOf(shown.machine, "Temperature"), "Unavailable");
    EXPECT_EQ(shown.note.toStdString(), "CPU temperature is unavailable on this Mac.");
    EXPECT_EQ(valueOf(shown.averages, "Today"), "—");
    EXPECT_EQ(shown.subtitle, QString());
    EXPECT_EQ(valueOf(shown.machine, "Processes"), "—");

    state.hasFirstSample = false;
    const CPUText early = presentCPU(state, PlatformWords::macOS);
    EXPECT_EQ(early.usage.toStdString(), "…");
    EXPECT_EQ(valueOf(early.loads, "Load, 1 min"), "…");
    EXPECT_EQ(valueOf(early.machine, "Processes"), "…");
    EXPECT_EQ(early.note, QString());
}

TEST(RangeTextTest, NamesTheReachOfAChartAndItsIntervalAsItIs) {
    const auto told = [](double interval) { return rangeText(std::nullopt, interval).toStdString(); };
    EXPECT_EQ(told(0), "Last 5 minutes") << "after one reading";
    EXPECT_EQ(told(1.04), "Last 5 minutes, every second") << "a reading takes its time";
    EXPECT_EQ(told(1.98), "Last 5 minutes, every 2 s");
    EXPECT_EQ(told(1.5), "Last 5 minutes, every 1.5 s");
    EXPECT_EQ(told(0.5), "Last 5 minutes, every 0.5 s");
    EXPECT_EQ(told(std::numeric_limits<double>::quiet_NaN()), "Last 5 minutes");
    EXPECT_EQ(rangeText(HistoryRange::hour1, 2).toStdString(), "Last hour");
    EXPECT_EQ(rangeText(HistoryRange::days7, 2).toStdString(), "Last 7 days");
}

TEST(CPUTextTest, PeakIsTheHighestOfTheLastFiveMinutes) {
    SystemSnapshot snapshot = machine();
    AppState state = stateOf(snapshot);
    for (const double usage : {0.2, 0.58, 0.31}) {
        snapshot.timestamp = snapshot.timestamp + 2;
        snapshot.cpu.usage = usage;
        state.live.add(snapshot);
    }
    EXPECT_EQ(valueOf(presentCPU(state, PlatformWords::Linux).averages, "Peak, 5 min"), "58%");
}

TEST(CPUTextTest, RowsOfCoresFollowTheirNumber) {
    EXPECT_EQ(coresPerRow(24, false), 12);
    EXPECT_EQ(coresPerRow(25, false), 16);
    EXPECT_EQ(coresPerRow(128, true), 6);
}

TEST(CPUTablesTest, FiguresThatNobodyToldAreDashes) {
    SystemSnapshot snapshot = machine();
    snapshot.processes = {{.pid = 1, .name = "hidden", .appKey = "nobody", .isRestricted = true}};
    const auto columns = cpuProcessColumns();
    const auto rows = cpuProcessRows(snapshot);
    EXPECT_EQ(cellOf(columns, "cpu", rows[0]), "—");
    EXPECT_EQ(cellOf(columns, "application", rows[0]), "—");
    EXPECT_EQ(cellOf(columns, "threads", rows[0]), "—");
    EXPECT_EQ(cellOf(columns, "running", rows[0]), "—");
}

TEST(MemoryTextTest, PartsNeverExceedTheBar) {
    SystemSnapshot snapshot = machine();
    snapshot.memory.total = 4 * gigabyte;
    snapshot.memory.app = 3 * gigabyte;
    snapshot.memory.wired = 2 * gigabyte;
    snapshot.memory.cached = 3 * gigabyte;
    const MemoryText shown = presentMemory(stateOf(snapshot), {}, PlatformWords::Linux);
    double sum = 0;
    for (const BarPart& part : shown.bar)
        sum += part.share;
    EXPECT_DOUBLE_EQ(sum, 1);
    ASSERT_EQ(shown.parts.size(), 5U);
    EXPECT_EQ(shown.parts[4].caption.toStdString(), "Free");
    EXPECT_EQ(shown.bar.front().name.toStdString(), "App 3.00 GB");
    EXPECT_TRUE(presentMemory(stateOf(machine()), {}, PlatformWords::Linux).bar.empty());
}

TEST(MemoryTextTest, SaysWhatSwapIs) {
    SystemSnapshot snapshot = machine();
    snapshot.memory.total = 8 * gigabyte;
    MemoryText shown = presentMemory(stateOf(snapshot), {}, PlatformWords::Linux);
    EXPECT_EQ(shown.stats[1].value.toStdString(), "None");
    EXPECT_EQ(shown.pressureLegend.size(), 1U);

    snapshot.memory.swapTotal = 3 * gigabyte;
    snapshot.memory.swapUsed = 2 * gigabyte;
    snapshot.memory.swapOutRate = std::numeric_limits<double>::quiet_NaN();
    shown = presentMemory(stateOf(snapshot), {}, PlatformWords::Linux);
    EXPECT_EQ(shown.stats[1].value.toStdString(), "2.00 GB");
    EXPECT_EQ(shown.stats[1].remark.toStdString(), "of 3.00 GB");
    EXPECT_EQ(shown.stats[3].value.toStdString(), "—");
    EXPECT_EQ(shown.pressureLegend.size(), 2U);
    EXPECT_EQ(shown.swapNote, QString());

    snapshot.memory.swapIsMemory = true;
    shown = presentMemory(stateOf(snapshot), {}, PlatformWords::Linux);
    EXPECT_NE(shown.swapNote.indexOf(QStringLiteral("this computer")), -1);
}

TEST(MemoryTextTest, PressureHasItsConditionAndWhatIsKnownOfIt) {
    SystemSnapshot snapshot = machine();
    snapshot.memory.availablePercent = 30;
    snapshot.memory.pressure = MemoryPressure::warning;
    const MemoryFacts facts{.elevatedFor = 725, .peakToday = 68.4};
    const MemoryText shown = presentMemory(stateOf(snapshot), facts, PlatformWords::Linux);
    EXPECT_EQ(shown.condition, Condition::elevated);
    EXPECT_EQ(shown.conditionWord.toStdString(), "Elevated");
    EXPECT_EQ(valueOf(shown.pressureFacts, "Elevated for"), "12 min");
    EXPECT_EQ(valueOf(shown.pressureFacts, "Peak today"), "70%") << "what holds now counts as today";
    EXPECT_EQ(valueOf(shown.pressureFacts, "Available"), "30%");

    const MemoryText unknown = presentMemory(stateOf(machine()), {}, PlatformWords::Linux);
    EXPECT_EQ(unknown.pressureFacts.size(), 1U) << "no peak without a history";
}

TEST(MemoryTextTest, ChangeCountsTheLastHourOnly) {
    const std::vector<TimedValue> series{{0, 900}, {3000, 100}, {4000, 300}, {6000, 250}};
    EXPECT_EQ(changeOverHour(series, 6000), 150);
    EXPECT_EQ(changeOverHour(series, 7600), -50);
    EXPECT_EQ(changeOverHour(series, 9000), std::nullopt) << "one point tells of no change";
    EXPECT_EQ(changeOverHour({}, 6000), std::nullopt);

    EXPECT_EQ(changeText(212 * megabyte).toStdString(), "+212 MB");
    EXPECT_EQ(changeText(-12.8 * megabyte).toStdString(), "\u221212.8 MB");
    EXPECT_EQ(changeText(0).toStdString(), "0 B");
    EXPECT_EQ(changeText(std::nullopt).toStdString(), "—");
    EXPECT_TRUE(isStrongGrowth(300 * megabyte));
    EXPECT_FALSE(isStrongGrowth(299 * megabyte));
    EXPECT_FALSE(isStrongGrowth(-400 * megabyte));

    EXPECT_EQ(watchedText(720).toStdString(), "Watched for 12 min so far");
    EXPECT_EQ(watchedText(3600), QString());
    EXPECT_EQ(watchedText(std::nullopt), QString());
}

TEST(MemoryTextTest, AxisReadsWithoutNeedlessZeros) {
    EXPECT_EQ(memoryAxisText(32.0 * gigabyte).toStdString(), "32 GB");
    EXPECT_EQ(memoryAxisText(15.6 * gigabyte).toStdString(), "15.6 GB");
    EXPECT_EQ(memoryAxisText(0).toStdString(), "0");
}

TEST(GPUTextTest, IsThereWhileItsLoadIsKnownOrWasLately) {
    EXPECT_FALSE(presentGPU(stateOf(machine())).isAvailable);
    SystemSnapshot snapshot = machine();
    snapshot.gpu.utilization = 0.24;
    AppState state = stateOf(snapshot);
    EXPECT_EQ(presentGPU(state).usage.toStdString(), "24%");
    state.snapshot = std::make_shared<SystemSnapshot>(machine());
    EXPECT_TRUE(presentGPU(state).isAvailable) << "a tick without an answer does not empty the page";
    EXPECT_EQ(presentGPU(state).usage.toStdString(), "—");
    AppState early;
    early.snapshot = std::make_shared<SystemSnapshot>(machine());
    EXPECT_TRUE(presentGPU(early).isAvailable);
    EXPECT_EQ(presentGPU(early).usage.toStdString(), "…");
}

TEST(GPUTextTest, ShowsWhatTheDriverTellsAlone) {
    SystemSnapshot snapshot = machine();
    snapshot.gpu.utilization = 0.24;
    GPUText shown = presentGPU(stateOf(snapshot));
    EXPECT_TRUE(shown.engines.empty());
    EXPECT_TRUE(shown.memory.empty());
    EXPECT_EQ(valueOf(shown.today, "Peak"), "—");
    EXPECT_FALSE(shown.hasTemperature);
    EXPECT_FALSE(shown.applicationsNote.isEmpty());

    snapshot.gpu.tilerUtilization = 0.14;
    snapshot.gpu.memoryInUse = 3 * gigabyte;
    snapshot.applications = {{.key = "a", .name = "A", .gpu = 0.051}, {.key = "b", .name = "B"}};
    shown = presentGPU(stateOf(snapshot));
    ASSERT_EQ(shown.engines.size(), 1U);
    EXPECT_EQ(shown.engines[0].value.toStdString(), "14%");
    EXPECT_EQ(valueOf(shown.memory, "Memory in use"), "3.00 GB");
    EXPECT_TRUE(shown.applicationsNote.isEmpty());
    const auto rows = gpuAppRows(snapshot);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(cellOf(gpuAppColumns(), "gpu", rows[0]), "5.1%");
}

TEST(AppShareTablesTest, MemoryThatTheSystemHidesIsADash) {
    SystemSnapshot snapshot = machine();
    snapshot.memory.total = 32 * gigabyte;
    snapshot.processes = {{.pid = 1, .appKey = "hidden", .isRestricted = true}};
    snapshot.applications = {{.key = "hidden", .name = "Hidden", .pids = {1}, .hasRestricted = true},
                             {.key = "a", .name = "A", .memory = 8 * gigabyte}};
    const auto rows = memoryAppRows(snapshot, [](const ApplicationSnapshot&) { return std::optional(400 * megabyte); });
    const auto columns = memoryAppColumns();
    EXPECT_EQ(cellOf(columns, "memory", rows[0]), "—");
    EXPECT_EQ(cellOf(columns, "share", rows[0]), "—");
    EXPECT_EQ(cellOf(columns, "change", rows[0]), "—");
    EXPECT_EQ(cellOf(columns, "share", rows[1]), "25%");
    EXPECT_EQ(cellOf(columns, "change", rows[1]), "+400 MB");
}

TEST(HistoryPointsTest, AbsentFiguresLeaveGaps) {
    const std::vector<SystemRow> rows{{.bucket = 0, .res = 60, .cpu = 0.5, .cpuMax = 0.9, .gpu = 0.25},
                                      {.bucket = 60, .res = 60, .cpu = std::nan("")},
                                      {.bucket = 900, .res = 900, .cpu = 0.1, .gpu = 0.75}};
    const std::vector<HistoryPoint> cpu{{0, 60, 0.5, 0.9}, {900, 900, 0.1, 0.0}};
    EXPECT_EQ(historyPoints(rows, &SystemRow::cpu, &SystemRow::cpuMax), cpu);
    const std::vector<HistoryPoint> gpu{{0, 60, 0.25, std::nullopt}, {900, 900, 0.75, std::nullopt}};
    EXPECT_EQ(historyPoints(rows, &SystemRow::gpu), gpu);
    EXPECT_EQ(greatest(rows, &SystemRow::gpu), 0.75);
    EXPECT_EQ(greatest(rows, &SystemRow::cpuTemp), std::nullopt);
}

} // namespace
} // namespace ostrivane
