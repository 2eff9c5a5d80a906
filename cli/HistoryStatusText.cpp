#include "cli/HistoryStatusText.hpp"

#include "cli/MachineText.hpp"
#include "cli/TextTable.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <iterator>
#include <vector>

namespace ostrivane::cli {

namespace {

void line(std::string& out, std::string_view label, std::string_view value) {
    fmt::format_to(std::back_inserter(out), "{:<12}{}\n", label, value);
}

std::string counted(std::int64_t count, std::string_view one, std::string_view more) {
    return fmt::format("{} {}", count, count == 1 ? one : more);
}

std::string writerText(const std::optional<HistoryWriter>& writer) {
    if (!writer)
        return "nothing now";
    const std::string name = writer->name.empty() ? "another program" : Text::visible(writer->name);
    return writer->pid > 0 ? fmt::format("{} (process {})", name, writer->pid) : name;
}

std::string samplesText(const HistoryStatus& status) {
    if (!status.earliest || !status.latest)
        return "none yet";
    return fmt::format("{} to {}", MachineText::time(*status.earliest), MachineText::time(*status.latest));
}

std::string resolutionTable(const std::vector<ResolutionCount>& resolutions) {
    TextTable table{.headings = {"ROWS OF", "MACHINE", "APPLICATIONS"}, .rows = {}};
    for (const ResolutionCount& count : resolutions)
        table.rows.push_back({Formatters::duration(static_cast<double>(count.res)), std::to_string(count.systemRows),
                              std::to_string(count.appRows)});
    return tableText(table, std::nullopt);
}

bool isOpen(const HistoryReport& report) {
    return report.status && !report.status->openError;
}

void contentLines(std::string& out, const HistoryStatus& status) {
    line(out, "Size", Formatters::storage(status.fileSize));
    if (!status.readError || status.earliest)
        line(out, "Samples", samplesText(status));
    line(out, "Kept for", counted(status.retentionDays, "day", "days"));
    if (!status.readError) // else a 0 may be what was not reached
        line(out, "Holds",
             fmt::format("{}, {}, {}, {}", counted(status.apps, "application", "applications"),
                         counted(status.alerts, "alert", "alerts"), counted(status.sessions, "session", "sessions"),
                         counted(status.storageSizes, "size of a folder", "sizes of folders")));
    if (status.pendingSystem > 0 || status.pendingApps > 0)
        line(out, "Waiting",
             fmt::format("{} of the machine, {} of applications", counted(status.pendingSystem, "row", "rows"),
                         status.pendingApps));
    if (!status.resolutions.empty())
        out += "\n" + resolutionTable(status.resolutions);
}

} // namespace

std::string statusText(const HistoryReport& report) {
    const HistoryPlace& place = report.place;
    std::string out;
    if (!place.exists && !place.problem)
        out = noHistoryText(place) + "\n";
    else
        line(out, "File", Text::visible(place.file));
    line(out, "Written by", writerText(place.writer));
    if (place.freeBytes)
        line(out, "Disk", Formatters::storage(*place.freeBytes) + " free");
    if (isOpen(report))
        contentLines(out, *report.status);
    std::vector<std::string> sentences = remarks(place);
    if (report.status && report.status->writeError)
        sentences.push_back("The last write failed: " + Text::visible(*report.status->writeError));
    if (report.status && report.status->maintenanceError)
        sentences.push_back("The last tidying failed: " + Text::visible(*report.status->maintenanceError));
    if (!sentences.empty())
        out += "\n" + fmt::format("{}\n", fmt::join(sentences, "\n"));
    return out;
}

std::optional<std::string> readProblem(const HistoryReport& report) {
    if (report.place.problem || !report.status)
        return report.place.problem;
    return report.status->openError ? report.status->openError : report.status->readError;
}

std::string clearedText(const Cleared& cleared) {
    const HistoryStatus& before = cleared.before;
    std::int64_t machine = 0, applications = 0;
    for (const ResolutionCount& count : before.resolutions) {
        machine += count.systemRows;
        applications += count.appRows;
    }
    return fmt::format("Deleted: {} of the machine, {} of {}, {}, {}, {}.\nThe file takes {} now; before it took {}.\n",
                       counted(machine, "row", "rows"), applications,
                       counted(before.apps, "application", "applications"), counted(before.alerts, "alert", "alerts"),
                       counted(before.sessions, "session", "sessions"),
                       counted(before.storageSizes, "size of a folder", "sizes of folders"),
                       Formatters::storage(cleared.after.fileSize), Formatters::storage(before.fileSize));
}

} // namespace ostrivane::cli
