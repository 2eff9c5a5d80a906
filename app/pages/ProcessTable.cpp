#include "app/pages/ProcessTable.hpp"

#include "app/widgets/AppIcons.hpp"
#include "app/widgets/Strings.hpp"
#include "core/attribution/AppGrouper.hpp"
#include "core/attribution/PathText.hpp"
#include "core/model/Formatters.hpp"

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>

namespace ostrivane {

namespace {

using Row = ProcessRow;

SortKey keyOf(std::optional<double> value) {
    return value ? SortKey(*value) : SortKey();
}

Tone toneOf(std::optional<double> value) {
    return value ? Tone::text : Tone::text2;
}

double share(std::optional<double> value, double full) {
    return value && *value > 0 && full > 0 ? *value / full : 0;
}

double largest(double known, std::optional<double> value) {
    return value && std::isfinite(*value) ? std::max(known, *value) : known;
}

std::optional<double> bytes(const Row& row) {
    const auto known = row.process->knownMemory();
    return known ? std::optional(static_cast<double>(*known)) : std::nullopt;
}

std::string_view appName(const Row& row) {
    return row.app ? std::string_view(row.app->name) : PathText::lastComponent(row.process->appKey);
}

} // namespace

ProcessHeat ProcessHeat::of(const std::vector<ProcessRow>& rows) {
    ProcessHeat heat;
    for (const ProcessRow& row : rows) {
        heat.cpu = largest(heat.cpu, row.process->knownCPU());
        heat.memory = largest(heat.memory, bytes(row));
    }
    return heat;
}

std::optional<std::uint32_t> ownUser(const SystemSnapshot& snapshot) {
    const auto own = std::ranges::find_if(
        snapshot.processes, [](const ProcessSnapshot& process) { return process.commandLine.has_value(); });
    return own == snapshot.processes.end() ? std::nullopt : std::optional(own->uid);
}

std::vector<ProcessRow> processRows(const SystemSnapshot& snapshot) {
    std::unordered_map<std::string_view, const ApplicationSnapshot*> apps;
    apps.reserve(snapshot.applications.size());
    for (const ApplicationSnapshot& app : snapshot.applications)
        apps.emplace(app.key, &app);
    const auto own = ownUser(snapshot);
    std::vector<ProcessRow> rows;
    rows.reserve(snapshot.processes.size());
    for (const ProcessSnapshot& process : snapshot.processes) {
        const auto app = apps.find(process.appKey);
        rows.push_back({&process, app == apps.end() ? nullptr : app->second, own && process.uid != *own});
    }
    return rows;
}

QPixmap processIcon(const ProcessRow& row, int pixels, qreal deviceRatio) {
    if (!row.app || row.app->isSystem)
        return AppIcons::pixmap(AppGrouper::executablePrefix, {}, std::nullopt, pixels, deviceRatio);
    return AppIcons::pixmap(*row.app, pixels, deviceRatio);
}

bool isListed(const ProcessRow& row, ProcessScope scope, const QString& wanted) {
    if (scope == ProcessScope::mine && row.isForeign)
        return false;
    if (scope == ProcessScope::developer && !row.process->isDevProcess)
        return false;
    return wanted.isEmpty() || text(row.process->name).contains(wanted, Qt::CaseInsensitive) ||
           QString::number(row.process->pid).startsWith(wanted);
}

std::vector<TableColumn<ProcessRow>> processColumns(const ProcessHeat& heat) {
    return {
        {.id = "name",
         .title = QStringLiteral("Name"),
         .isHideable = false,
         .text = [](const Row& row) { return text(row.process->name); },
         .sortKey = [](const Row& row) { return SortKey(std::string_view(row.process->name)); },
         .icon = processIcon},
        {.id = "pid",
         .title = QStringLiteral("PID"),
         .isNumeric = true,
         .width = 90,
         .text = [](const Row& row) { return QString::number(row.process->pid); },
         .sortKey = [](const Row& row) { return SortKey(static_cast<double>(row.process->pid)); }},
        {.id = "cpu",
         .title = QStringLiteral("CPU"),
         .isNumeric = true,
         .width = 98,
         .text =
             [](const Row& row) {
                 const auto cores = row.process->knownCPU();
                 return text(cores ? Formatters::cpu(*cores) : std::string(Formatters::dash));
             },
         .sortKey = [](const Row& row) { return keyOf(row.process->knownCPU()); },
         .sortsDescendingFirst = true,
         .heat = [&heat](const Row& row) { return share(row.process->knownCPU(), heat.cpu); },
         .tone = [](const Row& row) { return toneOf(row.process->knownCPU()); }},
        {.id = "memory",
         .title = QStringLiteral("Memory"),
         .isNumeric = true,
         .width = 128,
         .text =
             [](const Row& row) {
                 const auto size = bytes(row);
                 return text(size ? Formatters::bytes(*size) : std::string(Formatters::dash));
             },
         .sortKey = [](const Row& row) { return keyOf(bytes(row)); },
         .sortsDescendingFirst = true,
         .heat = [&heat](const Row& row) { return share(bytes(row), heat.memory); },
         .tone = [](const Row& row) { return toneOf(bytes(row)); },
         .suffix = [](const Row& row) { return row.process->memoryIsRSS ? QStringLiteral("*") : QString(); }},
        {.id = "user",
         .title = QStringLiteral("User"),
         .width = 137,
         .text = [](const Row& row) { return text(row.process->user); },
         .sortKey = [](const Row& row) { return SortKey(std::string_view(row.process->user)); },
         .tone = [](const Row& row) { return row.isForeign ? Tone::text3 : Tone::text; }},
        {.id = "app",
         .title = QStringLiteral("App"),
         .width = 226,
         .text = [](const Row& row) { return text(appName(row)); },
         .sortKey = [](const Row& row) { return SortKey(appName(row)); },
         .tone = [](const Row&) { return Tone::text2; }},
    };
}

} // namespace ostrivane
