#include "cli/UsageText.hpp"

#include "core/model/Formatters.hpp"
#include "core/model/SnapshotJSON.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace ostrivane::cli {

namespace {

template <class Record>
std::string json(const std::vector<Record>& records, const std::vector<UsageRow>& rows) {
    std::vector<Record> wanted;
    wanted.reserve(rows.size());
    for (const UsageRow& row : rows)
        wanted.push_back(records[row.source]);
    return recordsJSON(wanted) + "\n";
}

std::string counted(std::size_t count, std::string_view one, std::string_view more) {
    return fmt::format("{} {}", count, count == 1 ? one : more);
}

} // namespace

std::string usageText(const SystemSnapshot& snapshot, std::string_view limits, UsageSubject subject,
                      const UsageChoice& choice, std::optional<int> width) {
    const std::vector<UsageRow> rows = usageRows(snapshot, subject, choice);
    const int used = width.value_or(fullUsageWidth(rows));
    std::string text = plainText(usageHeading(subject, choice.sort, used)) + "\n";
    for (const UsageRow& row : rows)
        text += plainText(usageLine(row, choice.sort, used)) + "\n";
    text += "\n" + usageCount(snapshot, subject, rows.size()) + "\n";
    if (const std::string gaps = usageGaps(snapshot, limits); !gaps.empty())
        text += gaps + "\n";
    return text;
}

std::string usageJSON(const SystemSnapshot& snapshot, UsageSubject subject, const UsageChoice& choice) {
    const std::vector<UsageRow> rows = usageRows(snapshot, subject, choice);
    return subject == UsageSubject::processes ? json(snapshot.processes, rows) : json(snapshot.applications, rows);
}

std::string usageCount(const SystemSnapshot& snapshot, UsageSubject subject, std::size_t shown) {
    if (snapshot.processes.empty()) // not even this one
        return fmt::format("Processes: {}", Formatters::unavailable);
    const bool areProcesses = subject == UsageSubject::processes;
    const std::size_t all = areProcesses ? snapshot.processes.size() : snapshot.applications.size();
    const auto restricted = areProcesses
                                ? snapshot.restrictedProcessCount
                                : std::ranges::count_if(snapshot.applications, &ApplicationSnapshot::hasRestricted);
    std::string text =
        areProcesses ? counted(all, "process", "processes") : counted(all, "application", "applications");
    if (restricted > 0)
        text += fmt::format(", {} {} (*, owned by others)", restricted,
                            areProcesses ? "restricted" : "with restricted processes");
    if (shown != all)
        text += fmt::format("; {} shown", shown);
    return text;
}

std::string usageGaps(const SystemSnapshot& snapshot, std::string_view limits) {
    if (snapshot.processes.empty())
        return {};
    if (snapshot.interval == 0)
        return "No time has passed since a reading before; rates need that.";
    std::vector<std::string_view> gaps;
    if (!snapshot.perProcessNetworkAvailable)
        gaps.emplace_back("network");
    const auto isToldOf = [&](const std::optional<double> ProcessSnapshot::*figure) {
        return std::ranges::any_of(snapshot.processes,
                                   [&](const ProcessSnapshot& process) { return (process.*figure).has_value(); });
    };
    if (!isToldOf(&ProcessSnapshot::gpu))
        gaps.emplace_back("graphics");
    if (!isToldOf(&ProcessSnapshot::powerW))
        gaps.emplace_back("power");
    std::string text = gaps.empty() ? "" : fmt::format("No figures: {}.", fmt::join(gaps, ", "));
    if (!limits.empty())
        text += fmt::format("{}{}", text.empty() ? "" : " ", limits);
    return text;
}

} // namespace ostrivane::cli
