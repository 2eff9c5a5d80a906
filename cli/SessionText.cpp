#include "cli/SessionText.hpp"

#include "cli/MachineText.hpp"
#include "cli/TextTable.hpp"
#include "cli/Wording.hpp"
#include "core/judgement/SessionSummaryJSON.hpp"
#include "core/judgement/SessionWords.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/SumText.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cmath>

namespace ostrivane::cli {

namespace {

std::string heading(std::string_view name, std::string_view times, std::optional<int> width) {
    return clipped(Text::visible(name), width) + "\n" + clipped(times, width) + "\n";
}

std::string change(double bytes) {
    return (bytes < 0 ? "-" : "+") + Formatters::bytes(std::abs(bytes));
}

/// "35% on average, 98% at most".
template <class Words>
std::string averageAndPeak(const SessionSummary::Stat& stat, const Words& words) {
    return fmt::format("{} on average, {} at most", words(stat.average), words(stat.peak));
}

std::string memory(const SessionSummary& summary) {
    const auto bytes = [](double count) { return Formatters::bytes(count); };
    std::string text = averageAndPeak(summary.memoryUsed, bytes);
    if (summary.swapPeak > 0)
        text += fmt::format(", swap {} at most", Formatters::bytes(summary.swapPeak));
    return text +
           fmt::format("; the highest pressure was {}", Text::lowered(Text::visible(summary.memoryPressurePeak)));
}

std::string machineFacts(const SessionSummary& summary, std::optional<int> width) {
    const auto share = [](double fraction) { return Formatters::percent(fraction); };
    std::string text = longFact("Processor", averageAndPeak(summary.cpu, share), width);
    text += longFact("Memory", memory(summary), width);
    if (summary.gpu)
        text += longFact("Graphics", averageAndPeak(*summary.gpu, share), width);
    if (summary.cpuTemperature)
        text += longFact("Temperature",
                         averageAndPeak(*summary.cpuTemperature, [](double x) { return Formatters::temperature(x); }),
                         width);
    if (summary.systemPower)
        text += longFact("Power", averageAndPeak(*summary.systemPower, [](double x) { return Formatters::power(x); }),
                         width);
    text += longFact(
        "Disk",
        fmt::format("{} read, {} written", SumText::amount(summary.diskRead), SumText::amount(summary.diskWrite)),
        width);
    text +=
        longFact("Network",
                 fmt::format("{} in, {} out", SumText::amount(summary.netIn), SumText::amount(summary.netOut)), width);
    if (summary.batteryStart && summary.batteryEnd)
        text += longFact("Battery", fmt::format("{}% to {}%", *summary.batteryStart, *summary.batteryEnd), width);
    return text;
}

std::string applicationTable(const std::vector<SessionSummary::AppLine>& apps, std::optional<int> width) {
    TextTable table{
        .headings = {"APPLICATION", "CPU", "CPU TIME", "PEAK", "CHANGE", "ENERGY", "WRITTEN", "NETWORK", "PRESENT"},
        .rows = {}};
    for (const SessionSummary::AppLine& app : apps)
        table.rows.push_back({Text::visible(app.name), Formatters::cpu(app.avgCPU),
                              SumText::processorTime(app.cpuSeconds), Formatters::bytes(app.peakMemory),
                              change(app.memoryChange), SumText::energy(app.energyJ / SumText::joulesPerWattHour),
                              SumText::amount(app.diskWrite), SumText::amount(app.network),
                              Formatters::percent(app.presentFraction)});
    return tableText(table, width);
}

std::string processTable(const std::vector<SessionSummary::ProcessLine>& processes, std::optional<int> width) {
    TextTable table{.headings = {"PROCESS", "CPU TIME", "PEAK", "PID", "APPLICATION"}, .rows = {}};
    for (const SessionSummary::ProcessLine& process : processes)
        table.rows.push_back({Text::visible(process.name), SumText::processorTime(process.cpuSeconds),
                              Formatters::bytes(process.peakMemory), std::to_string(process.pid),
                              Text::visible(process.app)});
    return tableText(table, width);
}

std::string names(const std::vector<std::string>& list) {
    return Text::visible(fmt::format("{}", fmt::join(list, ", ")));
}

} // namespace

std::string summaryText(const SessionSummary& summary, std::optional<int> width) {
    std::string text = heading(summary.name,
                               fmt::format("{}, {} to {}", Formatters::duration(summary.end - summary.start),
                                           MachineText::time(summary.start), MachineText::time(summary.end)),
                               width);
    if (summary.samples == 0)
        return text + clipped(SessionWords::tooShort, width) + "\n";
    text += "\n" + machineFacts(summary, width);
    if (!summary.apps.empty())
        text += "\n" + applicationTable(summary.apps, width);
    if (!summary.processes.empty())
        text += "\n" + processTable(summary.processes, width);
    if (!summary.launchedApps.empty() || !summary.quitApps.empty())
        text += "\n" + longFact("Launched", names(summary.launchedApps), width) +
                longFact("Quit", names(summary.quitApps), width);
    return text;
}

std::string storedSessionText(const StoredSession& session, std::optional<int> width) {
    if (session.summaryJSON)
        if (const auto summary = readSessionSummary(*session.summaryJSON))
            return summaryText(*summary, width);
    if (!session.end)
        return heading(session.name, "since " + MachineText::time(session.start), width) +
               joined(wrapped(SessionWords::endless, "", width));
    return heading(session.name,
                   fmt::format("{}, {} to {}", Formatters::duration(*session.end - session.start),
                               MachineText::time(session.start), MachineText::time(*session.end)),
                   width) +
           joined(wrapped(SessionWords::unreadable, "", width));
}

std::string sessionsText(const std::vector<StoredSession>& sessions, std::optional<int> width) {
    if (sessions.empty())
        return "There are no sessions.\n";
    TextTable table{.headings = {"SESSION", "ID", "START", "END", "LASTED"}, .rows = {}};
    for (const StoredSession& session : sessions)
        table.rows.push_back(
            {Text::visible(session.name), std::to_string(session.id), MachineText::time(session.start),
             session.end ? MachineText::time(*session.end) : "not finished",
             session.end ? Formatters::duration(*session.end - session.start) : std::string(Formatters::dash)});
    return tableText(table, width);
}

} // namespace ostrivane::cli
