#include "cli/HistoryText.hpp"

#include "cli/HistoryFigures.hpp"
#include "cli/MachineText.hpp"
#include "cli/TextTable.hpp"
#include "cli/Wording.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/SumText.hpp"
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

std::string activeTime(double minutes) {
    return Formatters::duration(minutes * 60);
}

std::string heading(const std::vector<Figure>& figures, HistoryRange range, const Period& period,
                    std::optional<int> width) {
    double covered = 0;
    for (const Figure& figure : figures)
        covered = std::max(covered, coverage(figure.pieces, period));
    return clipped(fmt::format("The last {} up to {}", label(range), MachineText::time(period.end)), width) + "\n" +
           clipped("Samples cover " + Formatters::duration(covered), width) + "\n";
}

std::string drawings(const std::vector<Figure>& figures, const Period& period, const Layout& layout) {
    const int width = layout.width.value_or(usualWidth);
    std::string text;
    for (const Figure& figure : figures) {
        if (const auto lines = plotLines(figure, period, width, layout.glyphs); !lines.empty()) {
            text += '\n';
            text += joined(lines);
        }
    }
    text += joined(timeAxis(period, width, layout.glyphs));
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
    std::string text = clipped(Text::visible(summary.name), layout.width) + "\n" +
                       clipped(Text::visible(summary.appKey), layout.width) + "\n";
    if (figures.empty())
        return text + fmt::format("Nothing is known of it in the last {}.\n", label(range));
    text += heading(figures, range, period, layout.width) + "\n";
    const std::pair<std::string_view, std::string> facts[] = {
        {"Processor", Formatters::cpu(summary.avgCPU) + " over the whole range"},
        {"Memory", fmt::format("{} on average, {} at most", Formatters::bytes(summary.avgMemory),
                               Formatters::bytes(summary.peakMemory))},
        {"Disk",
         fmt::format("{} read, {} written", SumText::amount(summary.diskRead), SumText::amount(summary.diskWrite))},
        {"Network", fmt::format("{} in, {} out", SumText::amount(summary.netIn), SumText::amount(summary.netOut))},
        {"Energy", SumText::energy(summary.energyJ / SumText::joulesPerWattHour)},
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
                              Formatters::bytes(app.peakMemory), activeTime(app.activeMinutes),
                              SumText::amount(app.diskWrite), SumText::amount(app.diskRead), SumText::amount(app.netIn),
                              SumText::amount(app.netOut), SumText::energy(app.energyJ / SumText::joulesPerWattHour)});
    return tableText(table, width);
}

std::string totalsText(const Totals& totals, HistoryRange range) {
    return fmt::format("The last {}\n\n", label(range)) + fact("Read", SumText::amount(totals.diskRead), {}) +
           fact("Written", SumText::amount(totals.diskWrite), {}) + fact("In", SumText::amount(totals.netIn), {}) +
           fact("Out", SumText::amount(totals.netOut), {}) + fact("Energy", SumText::energy(totals.energyWh), {});
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
