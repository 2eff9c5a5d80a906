#include "app/pages/ApplicationsText.hpp"

#include "app/pages/CountText.hpp"
#include "app/widgets/AppIcons.hpp"
#include "app/widgets/Strings.hpp"
#include "core/attribution/AppGrouper.hpp"
#include "core/model/Formatters.hpp"

#include <QPixmap>

#include <boost/unordered/unordered_flat_map.hpp>

#include <algorithm>
#include <cmath>
#include <functional>

namespace ostrivane {

namespace {

constexpr int figureWidth = 94;

using Column = TableColumn<ApplicationRow>;

/// A column of figures whose highest stand first.
Column figures(ApplicationSort sort, const std::function<std::optional<double>(const ApplicationRow&)>& figure,
               const std::function<std::string(std::optional<double>)>& words) {
    Column column{.id = rawValue(sort), .title = title(sort), .isNumeric = true, .width = figureWidth};
    column.text = [figure, words](const ApplicationRow& row) { return text(words(figure(row))); };
    column.sortKey = [figure](const ApplicationRow& row) {
        const auto value = figure(row);
        return value ? SortKey(*value) : SortKey();
    };
    column.tone = [figure](const ApplicationRow& row) { return figure(row) ? Tone::text : Tone::text2; };
    column.sortsDescendingFirst = true;
    return column;
}

double share(double value, double whole) {
    const double ratio = value / whole;
    return std::isfinite(ratio) ? std::clamp(ratio, 0.0, 1.0) : 0;
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
        ApplicationSort::cpu,
        [](const ApplicationRow& row) { return row.hidden.use ? std::nullopt : std::optional(row.app->cpu); },
        [](std::optional<double> cores) { return cores ? Formatters::cpu(*cores) : std::string(Formatters::dash); });
    // A core that is fully busy has all the heat there is.
    column.heat = [](const ApplicationRow& row) { return row.hidden.use ? 0 : share(row.app->cpu, 1); };
    return column;
}

Column memoryColumn() {
    Column column = figures(
        ApplicationSort::memory,
        [](const ApplicationRow& row) {
            return row.hidden.use ? std::nullopt : std::optional(static_cast<double>(row.app->memory));
        },
        [](std::optional<double> bytes) { return bytes ? Formatters::bytes(*bytes) : std::string(Formatters::dash); });
    column.heat = [](const ApplicationRow& row) {
        return row.hidden.use ? 0 : share(static_cast<double>(row.app->memory), row.largest);
    };
    return column;
}

Column energyColumn() {
    return figures(
        ApplicationSort::energy, [](const ApplicationRow& row) { return row.app->powerW; }, Formatters::power);
}

Column diskColumn() {
    Column column = figures(
        ApplicationSort::disk,
        [](const ApplicationRow& row) {
            return row.hidden.disk ? std::nullopt : std::optional(row.app->diskWriteRate);
        },
        Formatters::diskRate);
    column.title = QStringLiteral("Disk W");
    return column;
}

Column networkColumn() {
    return figures(
        ApplicationSort::network, [](const ApplicationRow& row) { return traffic(*row.app); },
        [](std::optional<double> bytesPerSec) { return Formatters::rate(bytesPerSec); });
}

/// Whose figures a process keeps from its application's sums.
struct Hidden {
    std::int64_t use = 0;
    std::int64_t disk = 0;

    void add(const ProcessSnapshot& process) {
        if (!process.isRestricted)
            return;
        ++disk;
        if (!process.knownCPU())
            ++use;
    }
    HiddenFigures of(const ApplicationSnapshot& app) const {
        const std::int64_t all = app.processCount();
        return {.use = all > 0 && use >= all, .disk = all > 0 && disk >= all};
    }
};

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

HiddenFigures hiddenFigures(const ApplicationSnapshot& app, std::span<const ProcessSnapshot> processes) {
    Hidden hidden;
    for (const ProcessSnapshot& process : processes)
        if (process.appKey == app.key)
            hidden.add(process);
    return hidden.of(app);
}

std::vector<ApplicationRow> applicationRows(const SystemSnapshot& snapshot, const QString& filter,
                                            bool includesSystem) {
    boost::unordered_flat_map<std::string_view, Hidden, std::hash<std::string_view>> hidden;
    for (const ProcessSnapshot& process : snapshot.processes)
        if (process.isRestricted)
            hidden[process.appKey].add(process);
    const QString wanted = filter.trimmed();
    std::vector<ApplicationRow> rows;
    rows.reserve(snapshot.applications.size());
    for (const ApplicationSnapshot& app : snapshot.applications) {
        if (app.isSystem && !includesSystem)
            continue;
        if (!wanted.isEmpty() && !text(app.name).contains(wanted, Qt::CaseInsensitive))
            continue;
        const auto found = hidden.find(app.key);
        rows.push_back({.app = &app, .hidden = found == hidden.end() ? HiddenFigures() : found->second.of(app)});
    }
    double largest = 0;
    for (const ApplicationRow& row : rows)
        largest = std::max(largest, static_cast<double>(row.app->memory));
    for (ApplicationRow& row : rows)
        row.largest = largest;
    return rows;
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
