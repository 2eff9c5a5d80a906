#include "app/pages/CPUTables.hpp"

#include "app/pages/ApplicationsText.hpp"
#include "app/pages/CountText.hpp"
#include "app/widgets/AppIcons.hpp"
#include "app/widgets/Strings.hpp"
#include "core/model/Formatters.hpp"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace ostrivane {

namespace {

/// Cores, absent where the system hides them: 0 would be a guess.
std::optional<double> cores(const CPUAppRow& row) {
    return row.isHidden ? std::nullopt : std::optional(row.app->cpu);
}

QString coresText(std::optional<double> used) {
    return text(used ? Formatters::cpu(*used) : std::string(Formatters::dash));
}

SortKey keyOf(std::optional<double> value) {
    return value ? SortKey(*value) : SortKey();
}

/// A core that is fully busy has all the heat there is.
double heatOf(std::optional<double> used) {
    return std::clamp(used.value_or(0), 0.0, 1.0);
}

QString elapsedText(std::optional<double> seconds) {
    return text(seconds ? Formatters::duration(*seconds) : std::string(Formatters::dash));
}

std::optional<double> uptime(const CPUAppRow& row) {
    return row.app->startTime ? std::optional(std::max(0.0, row.now - *row.app->startTime)) : std::nullopt;
}

QString appName(const CPUProcessRow& row) {
    return text(row.app ? std::string_view(row.app->name) : Formatters::dash);
}

QPixmap iconOf(const CPUProcessRow& row, int pixels, qreal ratio) {
    const ProcessSnapshot& process = *row.process;
    if (!row.app || row.app->isSystem)
        return AppIcons::pixmap("exe:" + process.name, process.name, std::nullopt, pixels, ratio);
    return AppIcons::pixmap(*row.app, pixels, ratio);
}

} // namespace

std::vector<CPUProcessRow> cpuProcessRows(const SystemSnapshot& snapshot) {
    std::unordered_map<std::string_view, const ApplicationSnapshot*> apps;
    for (const ApplicationSnapshot& app : snapshot.applications)
        apps.emplace(app.key, &app);
    std::vector<CPUProcessRow> rows;
    rows.reserve(snapshot.processes.size());
    for (const ProcessSnapshot& process : snapshot.processes) {
        const auto found = apps.find(process.appKey);
        rows.push_back({&process, found == apps.end() ? nullptr : found->second, snapshot.timestamp});
    }
    return rows;
}

std::vector<TableColumn<CPUProcessRow>> cpuProcessColumns() {
    using Row = CPUProcessRow;
    return {{.id = "process",
             .title = QStringLiteral("Process"),
             .isHideable = false,
             .text = [](const Row& row) { return text(row.process->name); },
             .sortKey = [](const Row& row) { return SortKey(std::string_view(row.process->name)); },
             .icon = iconOf},
            {.id = "application",
             .title = QStringLiteral("Application"),
             .width = 200,
             .text = appName,
             .sortKey = [](const Row& row) { return row.app ? SortKey(std::string_view(row.app->name)) : SortKey(); }},
            {.id = "pid",
             .title = QStringLiteral("PID"),
             .isNumeric = true,
             .width = 80,
             .text = [](const Row& row) { return QString::number(row.process->pid); },
             .sortKey = [](const Row& row) { return SortKey(static_cast<double>(row.process->pid)); }},
            {.id = "cpu",
             .title = QStringLiteral("CPU"),
             .isNumeric = true,
             .width = 80,
             .isHideable = false,
             .text = [](const Row& row) { return coresText(row.process->knownCPU()); },
             .sortKey = [](const Row& row) { return keyOf(row.process->knownCPU()); },
             .sortsDescendingFirst = true,
             .heat = [](const Row& row) { return heatOf(row.process->knownCPU()); }},
            {.id = "threads",
             .title = QStringLiteral("Threads"),
             .isNumeric = true,
             .width = 74,
             .text =
                 [](const Row& row) {
                     return row.process->threads ? countText(*row.process->threads) : text(Formatters::dash);
                 },
             .sortKey =
                 [](const Row& row) {
                     const auto& threads = row.process->threads;
                     return threads ? SortKey(static_cast<double>(*threads)) : SortKey();
                 },
             .sortsDescendingFirst = true},
            {.id = "running",
             .title = QStringLiteral("Running for"),
             .isNumeric = true,
             .width = 96,
             .text = [](const Row& row) { return elapsedText(row.process->uptime(row.now)); },
             .sortKey = [](const Row& row) { return keyOf(row.process->uptime(row.now)); },
             .sortsDescendingFirst = true},
            {.id = "user",
             .title = QStringLiteral("User"),
             .width = 120,
             .text = [](const Row& row) { return text(row.process->user); },
             .sortKey = [](const Row& row) { return SortKey(std::string_view(row.process->user)); }}};
}

std::vector<CPUAppRow> cpuAppRows(const SystemSnapshot& snapshot) {
    std::vector<CPUAppRow> rows;
    rows.reserve(snapshot.applications.size());
    for (const ApplicationRow& row : applicationRows(snapshot, {}, true))
        rows.push_back({row.app, row.hidden.use, snapshot.timestamp});
    return rows;
}

std::vector<TableColumn<CPUAppRow>> cpuAppColumns() {
    using Row = CPUAppRow;
    return {{.id = "application",
             .title = QStringLiteral("Application"),
             .isHideable = false,
             .text = [](const Row& row) { return text(row.app->name); },
             .sortKey = [](const Row& row) { return SortKey(std::string_view(row.app->name)); },
             .icon = [](const Row& row, int pixels, qreal ratio) { return AppIcons::pixmap(*row.app, pixels, ratio); }},
            {.id = "processes",
             .title = QStringLiteral("Processes"),
             .isNumeric = true,
             .width = 96,
             .text = [](const Row& row) { return countText(row.app->processCount()); },
             .sortKey = [](const Row& row) { return SortKey(static_cast<double>(row.app->processCount())); },
             .sortsDescendingFirst = true},
            {.id = "cpu",
             .title = QStringLiteral("CPU"),
             .isNumeric = true,
             .width = 96,
             .isHideable = false,
             .text = [](const Row& row) { return coresText(cores(row)); },
             .sortKey = [](const Row& row) { return keyOf(cores(row)); },
             .sortsDescendingFirst = true,
             .heat = [](const Row& row) { return heatOf(cores(row)); }},
            {.id = "threads",
             .title = QStringLiteral("Threads"),
             .isNumeric = true,
             .width = 96,
             .text = [](const Row& row) { return countText(row.app->threads); },
             .sortKey = [](const Row& row) { return SortKey(static_cast<double>(row.app->threads)); },
             .sortsDescendingFirst = true},
            {.id = "running",
             .title = QStringLiteral("Running for"),
             .isNumeric = true,
             .width = 110,
             .text = [](const Row& row) { return elapsedText(uptime(row)); },
             .sortKey = [](const Row& row) { return keyOf(uptime(row)); },
             .sortsDescendingFirst = true}};
}

} // namespace ostrivane
