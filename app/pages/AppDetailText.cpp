#include "app/pages/AppDetailText.hpp"

#include "app/pages/ApplicationsText.hpp"
#include "app/pages/CountText.hpp"
#include "app/pages/Figure.hpp"
#include "app/widgets/Strings.hpp"
#include "core/model/Formatters.hpp"

#include <QPixmap>

#include <utility>

namespace ostrivane {

namespace {

using Column = TableColumn<const ProcessSnapshot*>;

std::vector<Stat> stats(QString cpu, QString memory, QString energy, QString threads) {
    return {{.caption = QStringLiteral("CPU"), .value = std::move(cpu)},
            {.caption = QStringLiteral("Memory"), .value = std::move(memory)},
            {.caption = QStringLiteral("Energy"), .value = std::move(energy)},
            {.caption = QStringLiteral("Threads"), .value = std::move(threads)}};
}

/// The same word for all four.
std::vector<Stat> absentStats(const QString& word, Tone tone) {
    std::vector<Stat> all = stats(word, word, word, word);
    for (Stat& stat : all)
        stat.tone = tone;
    return all;
}

Column figures(std::string_view id, QString title, int width,
               const std::function<std::optional<double>(const ProcessSnapshot&)>& figure,
               const std::function<std::string(double)>& words) {
    Column column{.id = id,
                  .title = std::move(title),
                  .isNumeric = true,
                  .width = width,
                  .text =
                      [figure, words](const ProcessSnapshot* process) {
                          const auto value = figure(*process);
                          return value ? text(words(*value)) : text(Formatters::dash);
                      },
                  .sortKey =
                      [figure](const ProcessSnapshot* process) {
                          const auto value = figure(*process);
                          return value ? SortKey(*value) : SortKey();
                      }};
    column.sortsDescendingFirst = true;
    column.tone = [figure](const ProcessSnapshot* process) { return figure(*process) ? Tone::text : Tone::text2; };
    return column;
}

} // namespace

AppHead appHead(const AppState& state, const std::string& key, const std::optional<AppHead>& before) {
    if (const ApplicationSnapshot* app = state.app(key))
        return {.key = key,
                .name = app->name,
                .bundlePath = app->bundlePath,
                .revealPath = revealPath(*app, state.snapshot->processes)};
    if (before && before->key == key)
        return *before;
    return {.key = key, .name = state.appName(key), .bundlePath = {}, .revealPath = {}};
}

AppDetailText presentAppDetail(const AppState& state, const ApplicationSnapshot* app) {
    if (!state.hasFirstSample)
        return {.summary = QStringLiteral("Measuring…"), .stats = absentStats(pendingFigure(), Tone::text)};
    const QString unavailable = text(Formatters::unavailable);
    if (!app)
        return {.summary = unavailable, .stats = absentStats(unavailable, Tone::text2)};
    const bool isHidden = hiddenFigures(*app, state.snapshot->processes).use;
    AppDetailText shown{.summary = processCountText(app->processCount()),
                        .stats = stats(isHidden ? unavailable : text(Formatters::cpu(app->cpu)),
                                       isHidden ? unavailable : text(Formatters::bytes(app->memory)),
                                       text(Formatters::power(app->powerW)),
                                       app->threads > 0 ? countText(app->threads) : unavailable)};
    if (app->startTime)
        shown.summary +=
            QStringLiteral(" · running for ") + text(Formatters::duration(state.snapshot->timestamp - *app->startTime));
    for (Stat& stat : shown.stats)
        if (stat.value == unavailable)
            stat.tone = Tone::text2;
    return shown;
}

std::vector<TableColumn<const ProcessSnapshot*>> appProcessColumns() {
    Column name{.id = "name",
                .title = QStringLiteral("Processes"),
                .isHideable = false,
                .text = [](const ProcessSnapshot* process) { return text(process->name); },
                .sortKey = [](const ProcessSnapshot* process) { return SortKey(std::string_view(process->name)); }};
    Column pid{.id = "pid",
               .title = QStringLiteral("PID"),
               .isNumeric = true,
               .width = 64,
               .text = [](const ProcessSnapshot* process) { return QString::number(process->pid); },
               .sortKey = [](const ProcessSnapshot* process) { return SortKey(static_cast<double>(process->pid)); }};
    Column cpu = figures(
        "cpu", QStringLiteral("CPU"), 62, [](const ProcessSnapshot& process) { return process.knownCPU(); },
        [](double cores) { return Formatters::cpu(cores); });
    Column memory = figures(
        "memory", QStringLiteral("Memory"), 92,
        [](const ProcessSnapshot& process) {
            const auto bytes = process.knownMemory();
            return bytes ? std::optional(static_cast<double>(*bytes)) : std::nullopt;
        },
        [](double bytes) { return Formatters::bytes(bytes); });
    memory.toolTip = [](const ProcessSnapshot* process) {
        return process->memoryIsRSS ? QStringLiteral("Resident size") : QString();
    };
    return {std::move(name), std::move(pid), std::move(cpu), std::move(memory)};
}

} // namespace ostrivane
