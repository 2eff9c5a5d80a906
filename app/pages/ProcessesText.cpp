#include "app/pages/ProcessesText.hpp"

#include "app/pages/CountText.hpp"
#include "app/widgets/Strings.hpp"
#include "core/model/Formatters.hpp"

#include <QStringList>

#include <algorithm>

namespace ostrivane {

namespace {

const QString between = QStringLiteral(" · ");

QString pidText(const ProcessSnapshot& process) {
    return QStringLiteral("PID %1").arg(process.pid);
}

QString withHome(const std::string& path, const std::string& home) {
    const bool isInside =
        home.size() > 1 && path.starts_with(home) && (path.size() == home.size() || path[home.size()] == '/');
    return text(isInside ? "~" + path.substr(home.size()) : path);
}

QString factsOf(const ProcessSnapshot& process, const SystemSnapshot& snapshot) {
    QStringList parts{pidText(process)};
    if (const ProcessSnapshot* parent = parentOf(snapshot, process))
        parts += QStringLiteral("parent ") + text(parent->name) + QStringLiteral(" (%1)").arg(parent->pid);
    if (process.state != ProcessSnapshot().state)
        parts += text(process.state);
    if (process.threads)
        parts += countText(*process.threads) +
                 (*process.threads == 1 ? QStringLiteral(" thread") : QStringLiteral(" threads"));
    if (const auto seconds = process.uptime(snapshot.timestamp))
        parts += QStringLiteral("up ") + text(Formatters::duration(*seconds));
    return parts.join(between);
}

QString activityOf(const ProcessSnapshot& process, const std::string& home) {
    QStringList parts;
    if (process.cwd)
        parts += QStringLiteral("in ") + withHome(*process.cwd, home);
    if (!process.isRestricted)
        parts += QStringLiteral("reads ") + text(Formatters::diskRate(process.diskReadRate)) +
                 QStringLiteral(", writes ") + text(Formatters::diskRate(process.diskWriteRate));
    if (process.netInRate && process.netOutRate)
        parts += QStringLiteral("receives ") + text(Formatters::rate(process.netInRate)) + QStringLiteral(", sends ") +
                 text(Formatters::rate(process.netOutRate));
    if (process.powerW)
        parts += text(Formatters::power(process.powerW));
    return parts.join(between);
}

} // namespace

const ProcessSnapshot* findProcess(const SystemSnapshot& snapshot, std::int32_t pid) {
    const auto found = std::ranges::find(snapshot.processes, pid, &ProcessSnapshot::pid);
    return found == snapshot.processes.end() ? nullptr : &*found;
}

const ProcessSnapshot* parentOf(const SystemSnapshot& snapshot, const ProcessSnapshot& process) {
    return process.ppid == process.pid ? nullptr : findProcess(snapshot, process.ppid);
}

ProcessPanel presentProcess(const ProcessSnapshot& process, const SystemSnapshot& snapshot, const std::string& home) {
    return {.name = text(process.name),
            .kind = text(process.devKind.value_or("")),
            .facts = factsOf(process, snapshot),
            .commandLine = text(process.commandLine.value_or("")),
            .activity = activityOf(process, home)};
}

ProcessPanel presentEnded(const ProcessSnapshot& process) {
    return {.name = text(process.name),
            .kind = text(process.devKind.value_or("")),
            .facts = pidText(process) + between + QStringLiteral("Ended"),
            .commandLine = text(process.commandLine.value_or("")),
            .activity = {}};
}

QString runningText(const SystemSnapshot& snapshot) {
    return snapshot.processCount > 0 ? countText(snapshot.processCount) + QStringLiteral(" running") : QString();
}

QString processesNote() {
    return QStringLiteral("Select a process to reveal or stop it. * = resident size (footprint isn't available for "
                          "processes owned by other users).");
}

QString restrictedText(const SystemSnapshot& snapshot) {
    return snapshot.restrictedProcessCount > 0
               ? countText(snapshot.restrictedProcessCount) + QStringLiteral(" owned by other users (limited metrics)")
               : QString();
}

} // namespace ostrivane
