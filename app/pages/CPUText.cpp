#include "app/pages/CPUText.hpp"

#include "app/model/AppState.hpp"
#include "app/pages/CountText.hpp"
#include "app/pages/Figure.hpp"
#include "app/widgets/Strings.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/PlatformWords.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace ostrivane {

namespace {

constexpr double fiveMinutes = 300;

struct CoreKind {
    CoreLoad::Kind kind;
    QChar letter;
    QString title;
    Series series;
};

/// In the order in which their means are listed.
const std::array<CoreKind, 3>& coreKinds() {
    using Kind = CoreLoad::Kind;
    static const std::array<CoreKind, 3> kinds{
        {{Kind::efficiency, QLatin1Char('E'), QStringLiteral("Efficiency"), Series::s3},
         {Kind::performance, QLatin1Char('P'), QStringLiteral("Performance"), Series::s1},
         {Kind::unknown, QLatin1Char('C'), QStringLiteral("Average"), Series::s1}}};
    return kinds;
}

const CoreKind& kindOf(const CoreLoad& core) {
    return *std::ranges::find(coreKinds(), core.kind, &CoreKind::kind);
}

std::vector<CoreCell> coreCells(const AppState& state) {
    const auto& cores = state.snapshot->cpu.cores;
    const auto& loads = state.live.cores();
    std::vector<CoreCell> cells;
    cells.reserve(cores.size());
    for (std::size_t index = 0; index < cores.size(); ++index) {
        const CoreLoad& core = cores[index];
        const CoreKind& kind = kindOf(core);
        cells.push_back({.label = kind.letter + QString::number(core.id),
                         .value = figure(state, Formatters::percent(core.usage)),
                         .series = kind.series,
                         .loads = index < loads.size() ? loads[index] : std::vector<double>{}});
    }
    return cells;
}

std::vector<LegendEntry> coreGroups(const AppState& state) {
    std::vector<LegendEntry> groups;
    for (const CoreKind& kind : coreKinds()) {
        double sum = 0;
        int count = 0;
        for (const CoreLoad& core : state.snapshot->cpu.cores)
            if (core.kind == kind.kind) {
                sum += core.usage;
                ++count;
            }
        if (count > 0)
            groups.push_back({kind.series, kind.title, figure(state, Formatters::percent(sum / count))});
    }
    return groups;
}

std::optional<double> highest(std::span<const TimedValue> points) {
    const auto most = std::ranges::max_element(points, {}, &TimedValue::value);
    return most == points.end() ? std::nullopt : std::optional(most->value);
}

QString processesText(const SystemSnapshot& snapshot) {
    return snapshot.processCount > 0 ? countText(snapshot.processCount) : text(Formatters::dash);
}

} // namespace

QString coresText(const CPUSnapshot& cpu) {
    const auto performance = cpu.performanceCoreCount;
    const auto efficiency = cpu.efficiencyCoreCount;
    if (performance > 0 && efficiency > 0)
        return QStringLiteral("%1 performance and %2 efficiency cores").arg(performance).arg(efficiency);
    if (cpu.logicalCoreCount <= 0)
        return {};
    return cpu.logicalCoreCount == 1 ? QStringLiteral("1 core") : QStringLiteral("%1 cores").arg(cpu.logicalCoreCount);
}

int coresPerRow(std::size_t cores, bool narrow) {
    constexpr std::size_t many = 24;
    if (narrow)
        return 6;
    return cores > many ? 16 : 12;
}

CPUText presentCPU(const AppState& state, const PlatformWords& words) {
    const SystemSnapshot& snapshot = *state.snapshot;
    const CPUSnapshot& cpu = snapshot.cpu;
    const auto percent = [&](std::optional<double> fraction) { return figure(state, Formatters::percent(fraction)); };
    const auto load = [&](std::size_t which) { return figure(state, Formatters::decimal(cpu.loadAverage[which], 2)); };

    CPUText shown;
    QStringList names{text(cpu.brand), coresText(cpu)};
    names.removeAll(QString());
    shown.subtitle = names.join(QStringLiteral(" · "));
    shown.usage = percent(cpu.usage);
    shown.parts = {{Series::s1, QStringLiteral("User"), percent(cpu.user)},
                   {Series::s2, QStringLiteral("System"), percent(cpu.system)},
                   {Series::track, QStringLiteral("Idle"), percent(cpu.idle)}};
    shown.averages = {{QStringLiteral("Average now"), percent(cpu.usage)},
                      {QStringLiteral("5 min average"), percent(state.live.average(LiveKey::cpu, fiveMinutes))},
                      {QStringLiteral("Today"), percent(state.cpuAverageToday)},
                      {QStringLiteral("Peak, 5 min"), percent(highest(state.live[LiveKey::cpu]))}};
    shown.loads = {{QStringLiteral("Load, 1 min"), load(0)},
                   {QStringLiteral("Load, 5 min"), load(1)},
                   {QStringLiteral("Load, 15 min"), load(2)}};
    shown.machine = {
        {QStringLiteral("Temperature"), figure(state, Formatters::temperature(snapshot.thermal.cpuTemperature))},
        {QStringLiteral("Processes"), state.hasFirstSample ? processesText(snapshot) : pendingFigure()},
        {QStringLiteral("Up for"), figure(state, Formatters::duration(cpu.uptime))}};
    if (state.hasFirstSample && !snapshot.thermal.cpuTemperature)
        shown.note = QStringLiteral("CPU temperature is unavailable on this %1.").arg(text(words.computer));
    shown.groups = coreGroups(state);
    shown.cores = coreCells(state);
    return shown;
}

} // namespace ostrivane
