#include "app/pages/ApplicationsText.hpp"

#include "app/widgets/AppIcons.hpp"
#include "app/widgets/Strings.hpp"
#include "core/attribution/AppGrouper.hpp"
#include "core/model/Formatters.hpp"

#include <QLocale>
#include <QPixmap>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr int figureWidth = 94;
constexpr std::int64_t groupedFrom = 10000;

using Column = TableColumn<ApplicationRow>;

SortKey key(const std::optional<double>& figure) {
    return figure ? SortKey(*figure) : SortKey();
}

/// A column of figures whose highest stand first.
Column figures(ApplicationSort sort, std::function<QString(const ApplicationRow&)> words,
               std::function<SortKey(const ApplicationRow&)> sortKey) {
    Column column{.id = rawValue(sort),
                  .title = title(sort),
                  .isNumeric = true,
                  .width = figureWidth,
                  .text = std::move(words),
                  .sortKey = std::move(sortKey)};
    column.sortsDescendingFirst = true;
    return column;
}

Column nameColumn() {
    Column column{.id = rawValue(ApplicationSort::name),
                  .title = QStringLiteral("Application"),
                  .isHideable = false,
                  .text = [](const ApplicationRow& row) { return text(row.app->name); },
                  .sortKey = [](const ApplicationRow& row) { return SortKey(std::string_view(row.app->name)); }};
    column.isStrong = true;
    column.icon = [](const ApplicationRow& row, int pixels, qreal ratio) {
        return AppIcons::pixmap(*row.app, pixels, ratio);
    };
    column.note = [](const ApplicationRow& row) { return countText(row.app->processCount()); };
    return column;
}

Column cpuColumn() {
    Column column = figures(
        ApplicationSort::cpu, [](const ApplicationRow& row) { return text(Formatters::cpu(row.app->cpu)); },
        [](const ApplicationRow& row) { return SortKey(row.app->cpu); });
    column.heat = [](const ApplicationRow& row) { return row.cpuShare; };
    return column;
}

Column memoryColumn() {
    Column column = figures(
        ApplicationSort::memory, [](const ApplicationRow& row) { return text(Formatters::bytes(row.app->memory)); },
        [](const ApplicationRow& row) { return SortKey(static_cast<double>(row.app->memory)); });
    column.heat = [](const ApplicationRow& row) { return row.memoryShare; };
    return column;
}

Column energyColumn() {
    Column column = figures(
        ApplicationSort::energy, [](const ApplicationRow& row) { return text(Formatters::power(row.app->powerW)); },
        [](const ApplicationRow& row) { return key(row.app->powerW); });
    column.tone = [](const ApplicationRow& row) { return row.app->powerW ? Tone::text : Tone::text2; };
    return column;
}

Column diskColumn() {
    Column column = figures(
        ApplicationSort::disk,
        [](const ApplicationRow& row) { return text(Formatters::diskRate(row.app->diskWriteRate)); },
        [](const ApplicationRow& row) { return SortKey(row.app->diskWriteRate); });
    column.title = QStringLiteral("Disk W");
    return column;
}

Column networkColumn() {
    Column column = figures(
        ApplicationSort::network, [](const ApplicationRow& row) { return text(Formatters::rate(traffic(*row.app))); },
        [](const ApplicationRow& row) { return key(traffic(*row.app)); });
    column.tone = [](const ApplicationRow& row) { return traffic(*row.app) ? Tone::text : Tone::text2; };
    return column;
}

} // namespace

QString title(ApplicationSort sort) {
    switch (sort) {
    case ApplicationSort::memory:
        return QStringLiteral("Memory");
    case ApplicationSort::cpu:
        return QStringLiteral("CPU");
    case ApplicationSort::energy:
        return QStringLiteral("Energy");
    case ApplicationSort::disk:
        return QStringLiteral("Disk");
    case ApplicationSort::network:
        return QStringLiteral("Network");
    case ApplicationSort::name:
        return QStringLiteral("Name");
    }
    return {};
}

std::vector<ApplicationRow> applicationRows(const SystemSnapshot& snapshot, const QString& filter,
                                            bool includesSystem) {
    const QString wanted = filter.trimmed();
    std::vector<ApplicationRow> rows;
    rows.reserve(snapshot.applications.size());
    double mostCPU = 0;
    double mostMemory = 0;
    for (const ApplicationSnapshot& app : snapshot.applications) {
        if (app.isSystem && !includesSystem)
            continue;
        if (!wanted.isEmpty() && !text(app.name).contains(wanted, Qt::CaseInsensitive))
            continue;
        mostCPU = std::max(mostCPU, app.cpu);
        mostMemory = std::max(mostMemory, static_cast<double>(app.memory));
        rows.push_back({.app = &app});
    }
    mostCPU = std::max(mostCPU, 1.0); // less than one core in all is nothing to shout about
    for (ApplicationRow& row : rows) {
        row.cpuShare = row.app->cpu / mostCPU;
        row.memoryShare = mostMemory > 0 ? static_cast<double>(row.app->memory) / mostMemory : 0;
    }
    return rows;
}

QString countText(std::int64_t count) {
    return count < groupedFrom ? QString::number(count) : QLocale().toString(qlonglong(count));
}

QString processCountText(std::int64_t count) {
    return countText(count) + (count == 1 ? QStringLiteral(" process") : QStringLiteral(" processes"));
}

QString applicationCounts(std::span<const ApplicationRow> rows) {
    std::int64_t processes = 0;
    for (const ApplicationRow& row : rows)
        processes += row.app->processCount();
    const auto count = static_cast<std::int64_t>(rows.size());
    return countText(count) + (count == 1 ? QStringLiteral(" application · ") : QStringLiteral(" applications · ")) +
           processCountText(processes);
}

std::vector<TableColumn<ApplicationRow>> applicationColumns(const PlatformWords& words) {
    std::vector<Column> columns{nameColumn(),   cpuColumn(),  memoryColumn(),
                                energyColumn(), diskColumn(), networkColumn()};
    const QString partial = QStringLiteral("Without the processes whose use %1 hides").arg(text(words.system));
    for (Column& column : columns)
        if (column.isNumeric)
            column.toolTip = [partial](const ApplicationRow& row) {
                return row.app->hasRestricted ? partial : QString();
            };
    return columns;
}

QString systemSwitchText(const PlatformWords& words) {
    return text(words.systemLabel) + QStringLiteral(" & other users");
}

EmptyApplications emptyApplications(bool hasFirstSample) {
    if (!hasFirstSample)
        return {.title = QStringLiteral("Measuring…"), .action = {}};
    return {.title = QStringLiteral("No matches."), .action = QStringLiteral("Clear Filter")};
}

QString missingTrafficText(const SystemSnapshot& snapshot, bool isWanted, const PlatformWords& words) {
    if (snapshot.perProcessNetworkAvailable)
        return {};
    if (!isWanted)
        return QStringLiteral("Network use by application is switched off in Settings.");
    return QStringLiteral("Network use by application is unavailable on this %1.").arg(text(words.computer));
}

std::optional<double> traffic(const ApplicationSnapshot& app) {
    if (!app.netInRate && !app.netOutRate)
        return std::nullopt;
    return app.netInRate.value_or(0) + app.netOutRate.value_or(0);
}

std::optional<std::string> revealPath(const ApplicationSnapshot& app, std::span<const ProcessSnapshot> processes) {
    if (app.bundlePath)
        return app.bundlePath;
    if (!app.mainPID || app.key == AppGrouper::systemKey)
        return std::nullopt;
    const auto main = std::ranges::find(processes, *app.mainPID, &ProcessSnapshot::pid);
    return main == processes.end() ? std::nullopt : main->path;
}

} // namespace ostrivane
