#include "core/attribution/RunningApplications.hpp"

#include <tuple>

namespace ostrivane {

namespace {

bool isInNoMenu(const InstalledApplication* application) {
    return application && application->noDisplay;
}

bool isOpen(const GroupedProcess& process, const DesktopEntryIndex& installed) {
    if (!process.key.starts_with('/') || isInNoMenu(installed.bundleAt(process.key)))
        return false;
    return !process.unit->isAutostart || !isInNoMenu(installed.bundleForID(process.unit->id));
}

/// The smaller, the better a process stands for its application.
auto rank(const GroupedProcess& process) {
    const bool leads = process.leader == process.pid && !process.unit->group.empty();
    return std::tuple(!leads, process.start.seconds, process.pid);
}

} // namespace

std::map<std::string, std::int32_t> runningApplications(std::span<const GroupedProcess> processes,
                                                        const DesktopEntryIndex& installed) {
    std::map<std::string_view, const GroupedProcess*> best;
    for (const GroupedProcess& process : processes) {
        if (!isOpen(process, installed))
            continue;
        const auto [held, isFirst] = best.emplace(process.key, &process);
        if (!isFirst && rank(process) < rank(*held->second))
            held->second = &process;
    }
    std::map<std::string, std::int32_t> running;
    for (const auto& [key, process] : best)
        running.emplace(key, process->pid);
    return running;
}

} // namespace ostrivane
