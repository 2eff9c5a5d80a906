#include "cli/HistoryText.hpp"

#include "cli/HistoryFigures.hpp"
#include "cli/MachineText.hpp"
#include "cli/StyledText.hpp"
#include "cli/TextTable.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <utility>

namespace ostrivane::cli {

namespace {

constexpr int usualWidth = 80;

std::string words(std::string_view text, std::optional<int> width) {
    return Text::fitted(text, width.value_or(Text::columns(text) + 1));
}

/// Bytes that were moved, as a size. A row holds 0 both where nothing was moved and where nobody measured it: a dash.
std::string amount(double bytes) {
    constexpr double most = 9e18; // fits the integer
    if (!std::isfinite(bytes) || bytes <= 0)
        return std::string(Formatters::dash);
    return Formatters::storage(static_cast<std::uint64_t>(std::min(bytes, most)));
}

/// The rows hold 0 where the machine tells of no energy, which nothing that runs needs.
std::string energy(double wattHours) {
    return wattHours > 0 ? Formatters::energy(wattHours) : std::string(Formatters::dash);
}

constexpr double joulesPerWattHour = 3600;

std::string activeTime(double minutes) {
    return Formatters::duration(minutes * 60);
}

void append(std::string& text, const std::vector<std::string>& lines) {
    for (const std::string& line : lines)
        text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
}

std::string heading(const std::vector<Figure>& figures, HistoryRange range, const Period& period,
                    std::optional<int> width) {
    double covered = 0;
    for (const Figure& figure : figures)
        covered = std::max(covered, coverage(figure.pieces, period));
    return words(fmt::format("The last {} up to {}", label(range), MachineText::time(period.end)), width) + "\n" +
           words("Samples cover " + Formatters::duration(covered), width) + "\n";
}

std::string drawings(const std::vector<Figure>& figures, const Period& period, const Layout& layout) {
    const int width = layout.width.value_or(usualWidth);
    std::string text;
    for (const Figure& figure : figures) {
        if (const auto lines = plotLines(figure, period, width, layout.glyphs); !lines.empty()) {
            text += '\n';
            append(text, lines);
        }
    }
    append(text, timeAxis(period, width, layout.glyphs));
    return text;
}

/// Parts of a range that make a short table.
int partsOf(HistoryRange range) {
    switch (range) {
    case HistoryRange::hour1:
    case HistoryRange::hours12:
        return 12;
    case HistoryRange::hours24:
        return 24;
    case HistoryRange::days7:
        return 7;
    case HistoryRange::days30:
        return 30;
    }
    return 1;
}

std::string meansTable(const std::vector<Figure>& figures, HistoryRange range, const Period& period,
                       std::optional<int> width) {
    const int parts = partsOf(range);
    TextTable table{.headings = {"From"}, .rows = {}};
    for (int part = 0; part < parts; ++part)
        table.rows.push_back({MachineText::time(period.start + period.seconds() * part / parts)});
    for (const Figure& figure : figures) {
        table.headings.emplace_back(figure.title);
        const auto values = means(figure.pieces, period, parts);
        for (std::size_t row = 0; row < values.size(); ++row)
            table.rows[row].push_back(values[row] ? figure.words(*values[row]) : std::string(Formatters::dash));
    }
    return tableText(table, width);
}

/// Words of `text` in lines of at most `width` columns, each behind `margin`.
std::string wrapped(std::string_view text, std::string_view margin, std::optional<int> width) {
    const int room = width ? std::max(*width - Text::columns(margin), 1) : 0;
    std::string out, line;
    const auto end = [&] {
        if (!line.empty())
            out += std::string(margin) + (room > 0 ? Text::fitted(line, room) : line) + "\n";
        line.clear();
    };
    for (const std::string_view word : Text::words(text)) {
        if (room > 0 && Text::columns(line) + 1 + Text::columns(word) > room)
            end();
        line += (line.empty() ? "" : " ") + std::string(word);
    }
    end();
    return out;
}

std::string fact(std::string_view name, std::string_view value, std::optional<int> width) {
    return words(fmt::format("{:<12}{}", name, value), width) + "\n";
}

} // namespace

std::string rowsText(const std::vector<SystemRow>& rows, HistoryRange range, Date now, bool withTable,
                     const Layout& layout) {
    const Period period = lastOf(range, now);
    const std::vector<Figure> figures = machineFigures(rows);
    if (figures.empty())
        return fmt::format("Nothing is known of the last {}.\n", label(range));
    std::string text = heading(figures, range, period, layout.width) + drawings(figures, period, layout);
    if (withTable)
        text += "\n" + meansTable(figures, range, period, layout.width);
    return text;
}

std::string applicationText(const ApplicationHistory& application, HistoryRange range, Date now, const Layout& layout) {
    const AppUsageSummary& summary = application.summary;
    const Period period = lastOf(range, now);
    const std::vector<Figure> figures = applicationFigures(application.rows);
    std::string text = words(Text::visible(summary.name), layout.width) + "\n" +
                       words(Text::visible(summary.appKey), layout.width) + "\n";
    if (figures.empty())
        return text + fmt::format("Nothing is known of it in the last {}.\n", label(range));
    text += heading(figures, range, period, layout.width) + "\n";
    const std::pair<std::string_view, std::string> facts[] = {
        {"Processor", Formatters::cpu(summary.avgCPU) + " over the whole range"},
        {"Memory", fmt::format("{} on average, {} at most", Formatters::bytes(summary.avgMemory),
                               Formatters::bytes(summary.peakMemory))},
        {"Disk", fmt::format("{} read, {} written", amount(summary.diskRead), amount(summary.diskWrite))},
        {"Network", fmt::format("{} in, {} out", amount(summary.netIn), amount(summary.netOut))},
        {"Energy", energy(summary.energyJ / joulesPerWattHour)},
        {"Active", activeTime(summary.activeMinutes)}};
    for (const auto& [name, value] : facts)
        text += fact(name, value, layout.width);
    return text + drawings(figures, period, layout);
}

std::string topText(const std::vector<AppUsageSummary>& applications, HistoryRange range, std::optional<int> width) {
    if (applications.empty())
        return fmt::format("No application is known in the last {}.\n", label(range));
    TextTable table{
        .headings = {"APPLICATION", "CPU", "MEMORY", "PEAK", "ACTIVE", "WRITTEN", "READ", "IN", "OUT", "ENERGY"},
        .rows = {}};
    for (const AppUsageSummary& app : applications)
        table.rows.push_back({Text::visible(app.name), Formatters::cpu(app.avgCPU), Formatters::bytes(app.avgMemory),
                              Formatters::bytes(app.peakMemory), activeTime(app.activeMinutes), amount(app.diskWrite),
                              amount(app.diskRead), amount(app.netIn), amount(app.netOut),
                              energy(app.energyJ / joulesPerWattHour)});
    return tableText(table, width);
}

std::string totalsText(const Totals& totals, HistoryRange range) {
    return fmt::format("The last {}\n\n", label(range)) + fact("Read", amount(totals.diskRead), {}) +
           fact("Written", amount(totals.diskWrite), {}) + fact("In", amount(totals.netIn), {}) +
           fact("Out", amount(totals.netOut), {}) + fact("Energy", energy(totals.energyWh), {});
}

std::string alertsText(const std::vector<StoredAlert>& alerts, std::optional<int> width) {
    if (alerts.empty())
        return "There are no alerts.\n";
    std::string text;
    for (const StoredAlert& alert : alerts)
        text += words(fmt::format("{}  {:<8}  {}", MachineText::time(alert.date), Text::visible(alert.severity),
                                  Text::visible(alert.title)),
                      width) +
                "\n" + wrapped(Text::visible(alert.body), "    ", width);
    return text;
}

std::string sessionsText(const std::vector<StoredSession>& sessions, std::optional<int> width) {
    if (sessions.empty())
        return "There are no sessions.\n";
    TextTable table{.headings = {"SESSION", "START", "END", "LASTED"}, .rows = {}};
    for (const StoredSession& session : sessions)
        table.rows.push_back(
            {Text::visible(session.name), MachineText::time(session.start),
             session.end ? MachineText::time(*session.end) : "not finished",
             session.end ? Formatters::duration(*session.end - session.start) : std::string(Formatters::dash)});
    return tableText(table, width);
}

Meant meantApplication(const std::vector<AppUsageSummary>& applications, const std::string& wanted,
                       HistoryRange range) {
    const auto byKey = std::ranges::find(applications, wanted, &AppUsageSummary::appKey);
    if (byKey != applications.end())
        return {&*byKey, {}};
    std::vector<const AppUsageSummary*> named;
    const std::string name = Text::lowered(wanted);
    for (const AppUsageSummary& application : applications)
        if (Text::lowered(application.name) == name)
            named.push_back(&application);
    if (named.size() == 1)
        return {named.front(), {}};
    if (named.empty())
        return {nullptr, fmt::format("{}: no such application in the last {}; \"ostrivanectl history top --range {} "
                                     "--json\" lists the names and the keys",
                                     wanted, label(range), rawValue(range))};
    std::string problem = fmt::format("{}: {} applications have this name; ask by key:", wanted, named.size());
    for (const AppUsageSummary* application : named)
        problem += " \"" + application->appKey + "\"";
    return {nullptr, problem};
}

} // namespace ostrivane::cli
