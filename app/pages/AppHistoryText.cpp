#include "app/pages/AppHistoryText.hpp"

#include "app/pages/Figure.hpp"
#include "app/widgets/Strings.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/SumText.hpp"

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr std::size_t fewestRows = 2; // a line needs two points

struct Figures {
    double meanCPU = 0;    ///< cores, over the time that the rows cover
    double peakMemory = 0; ///< bytes
    double energyWh = 0;
};

Figures summed(std::span<const AppRow> rows) {
    Figures figures;
    double covered = 0;
    for (const AppRow& row : rows) {
        const auto length = static_cast<double>(row.res);
        figures.meanCPU += row.cpu * length;
        covered += length;
        figures.energyWh += row.energyJ / SumText::joulesPerWattHour;
        figures.peakMemory = std::max(figures.peakMemory, row.memMax);
    }
    if (covered > 0)
        figures.meanCPU /= covered;
    return figures;
}

std::vector<LegendEntry> entries(QString average, QString peak, QString energy) {
    return {{.series = {}, .name = QStringLiteral("Average"), .value = std::move(average)},
            {.series = {}, .name = QStringLiteral("Peak"), .value = std::move(peak)},
            {.series = {}, .name = QStringLiteral("Energy"), .value = std::move(energy)}};
}

HistoryLine line(std::span<const AppRow> rows, double AppRow::*mean, double AppRow::*peak) {
    HistoryLine line;
    line.points.reserve(rows.size());
    for (const AppRow& row : rows)
        line.points.push_back({.time = static_cast<double>(row.bucket),
                               .length = static_cast<double>(row.res),
                               .value = row.*mean,
                               .peak = row.*peak});
    return line;
}

} // namespace

AppHistoryText presentAppHistory(const std::vector<AppRow>* rows, HistoryRange range) {
    const QString span = QStringLiteral(" over ") + text(label(range));
    AppHistoryText shown{.cpuTitle = QStringLiteral("CPU") + span,
                         .memoryTitle = QStringLiteral("Memory") + span,
                         .note = {},
                         .figures = {}};
    if (!rows) {
        const QString waiting = pendingFigure();
        shown.figures = entries(waiting, waiting, waiting);
    } else if (rows->size() < fewestRows) {
        shown.note = QStringLiteral("History for this app builds up as Ostrivane runs.");
    } else {
        const Figures figures = summed(*rows);
        shown.figures = entries(text(Formatters::cpu(figures.meanCPU)), text(Formatters::bytes(figures.peakMemory)),
                                text(SumText::energy(figures.energyWh)));
    }
    return shown;
}

HistoryLine appCPULine(std::span<const AppRow> rows) {
    HistoryLine shown = line(rows, &AppRow::cpu, &AppRow::cpuMax);
    shown.series = Series::s1;
    shown.name = QStringLiteral("CPU");
    shown.text = [](double cores) { return text(Formatters::cpu(cores)); };
    return shown;
}

HistoryLine appMemoryLine(std::span<const AppRow> rows) {
    HistoryLine shown = line(rows, &AppRow::mem, &AppRow::memMax);
    shown.series = Series::s4;
    shown.name = QStringLiteral("Memory");
    shown.text = [](double bytes) { return text(Formatters::bytes(bytes)); };
    return shown;
}

} // namespace ostrivane
