#include "cli/WatchTable.hpp"

#include "cli/Bar.hpp"
#include "cli/MachineText.hpp"
#include "cli/UsageText.hpp"
#include "cli/WatchState.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace ostrivane::cli {

namespace {

StyledLine loadLine(std::string_view label, double fraction, std::string figure, int width) {
    figure.insert(0, " ");
    StyledLine bar = Bar::load(fraction, width - labelColumns - Text::columns(figure));
    bar.push_back({std::move(figure), Style::bold});
    return labelled(label, std::move(bar));
}

/// The pages, and the filter of the one shown.
StyledLine pageLine(const WatchState& state, int width) {
    constexpr std::array<std::pair<WatchPage, std::string_view>, 4> pages{{{WatchPage::overview, "Overview"},
                                                                           {WatchPage::applications, "Applications"},
                                                                           {WatchPage::processes, "Processes"},
                                                                           {WatchPage::judgement, "Judgement"}}};
    StyledLine line;
    for (const auto& [page, title] : pages)
        line.push_back(page == state.page ? Span{fmt::format("[{}] ", title), Style::accent}
                                          : Span{fmt::format(" {}  ", title), Style::dim});
    const std::string& filter = state.table().filter;
    if (state.subject() && !filter.empty()) {
        line.push_back({" filter: ", Style::dim});
        line.push_back({Text::visible(filter), Style::warning});
    }
    return fitted(line, width);
}

std::string details(const ProcessSnapshot& process) {
    std::string text = fmt::format("{} {}", process.pid, process.user);
    const auto& what = process.commandLine ? process.commandLine : process.path;
    return what ? fmt::format("{}: {}", text, *what) : text;
}

std::string details(const ApplicationSnapshot& application) {
    return fmt::format("{} {}: {}", application.processCount(),
                       application.processCount() == 1 ? "process" : "processes",
                       application.bundlePath.value_or(application.key));
}

/// What is selected; otherwise what the table holds and what it cannot tell.
StyledLine statusLine(const SystemSnapshot& snapshot, UsageSubject subject, const TableView& table,
                      const std::vector<UsageRow>& rows, std::string_view limits) {
    if (!table.selected.empty() && table.place < rows.size()) {
        const std::size_t source = rows[table.place].source;
        return {{Text::visible(subject == UsageSubject::processes ? details(snapshot.processes[source])
                                                                  : details(snapshot.applications[source]))}};
    }
    return {{usageCount(snapshot, subject, rows.size()) + ". ", Style::dim}, {usageGaps(snapshot, limits), Style::dim}};
}

StyledLine selectedLine(const UsageRow& row, UsageSort sort, int width) {
    return {{plainText(usageLine(row, sort, width)), Style::selected}};
}

/// The end of `text` that takes at most `width` columns: what is typed now is seen.
std::string lastColumns(std::string_view text, int width) {
    while (Text::columns(text) > width) {
        text.remove_prefix(1);
        while (!text.empty() && (static_cast<unsigned char>(text.front()) & 0xC0) == 0x80)
            text.remove_prefix(1);
    }
    return std::string(text);
}

StyledLine typingLine(const std::string& filter, int width) {
    constexpr std::string_view title = "Filter: ";
    constexpr std::string_view cursor = "▏";
    constexpr std::string_view keys = "  Enter keep  Esc clear";
    constexpr int leastText = 12;
    const int room = width - Text::columns(title) - Text::columns(cursor);
    const bool keysFit = room - Text::columns(keys) >= leastText;
    const int textRoom = std::max(keysFit ? room - Text::columns(keys) : room, 0);
    StyledLine line{{std::string(title), Style::bold},
                    {lastColumns(Text::visible(filter), textRoom)},
                    {std::string(cursor), Style::accent}};
    if (keysFit)
        line.push_back({std::string(keys), Style::dim});
    return line;
}

std::string keysOf(const WatchState& state) {
    if (state.page == WatchPage::overview)
        return "q quit  r refresh  Tab applications";
    if (state.page == WatchPage::judgement)
        return "q quit  r refresh  Tab overview  ↑↓ scroll";
    const TableView& table = state.table();
    std::string keys =
        fmt::format("q quit  r refresh  Tab {}  s sort: {}  / filter",
                    state.page == WatchPage::applications ? "processes" : "judgement", rawValue(table.sort));
    if (!table.filter.empty())
        keys += "  Esc all";
    else if (!table.selected.empty())
        keys += "  Esc top";
    else
        keys += "  ↑↓ select";
    return keys;
}

} // namespace

std::vector<StyledLine> presentHeader(const SystemSnapshot& snapshot, const WatchState& state,
                                      const WatchFrame& frame) {
    const MemorySnapshot& memory = snapshot.memory;
    std::vector<StyledLine> lines{
        spread({MachineText::machine(snapshot), Style::accent}, {MachineText::time(snapshot.timestamp)}, frame.width),
        loadLine("CPU", snapshot.cpu.usage, fmt::format("{:>4}", MachineText::usage(snapshot.cpu)), frame.width),
        loadLine("Memory", memory.usedFraction(), MachineText::used(memory), frame.width),
        pageLine(state, frame.width)};
    lines.erase(lines.begin(), lines.end() - tablePage(frame.height).header);
    return lines;
}

std::vector<StyledLine> presentTable(const SystemSnapshot& snapshot, const WatchState& state, const WatchFrame& frame) {
    const TablePage page = tablePage(frame.height);
    const UsageSubject subject = state.subject().value_or(UsageSubject::applications);
    const TableView& table = state.table();
    const std::vector<UsageRow> rows = shownRows(state, snapshot);
    std::vector<StyledLine> lines = presentHeader(snapshot, state, frame);
    if (page.heading)
        lines.push_back(usageHeading(subject, table.sort, frame.width));
    const std::size_t last = std::min(rows.size(), table.top + static_cast<std::size_t>(page.rows));
    for (std::size_t index = table.top; index < last; ++index)
        lines.push_back(rows[index].id == table.selected ? selectedLine(rows[index], table.sort, frame.width)
                                                         : usageLine(rows[index], table.sort, frame.width));
    if (rows.empty() && page.rows > 0)
        lines.push_back({{table.filter.empty() ? std::string(Formatters::unavailable) : "Nothing matches the filter.",
                          Style::dim}});
    if (page.status) {
        lines.resize(static_cast<std::size_t>(std::max(frame.height, 1)) - 2); // the footer follows
        lines.push_back(statusLine(snapshot, subject, table, rows, frame.limits));
    }
    return lines;
}

StyledLine presentFooter(const WatchState& state, const WatchFrame& frame) {
    if (state.isTyping)
        return typingLine(state.table().filter, frame.width);
    const std::string keys = keysOf(state);
    if (!frame.remark.empty())
        return {{Text::visible(frame.remark), Style::warning}, {"  " + keys, Style::dim}};
    return spread({keys, Style::dim}, {Text::visible(frame.source), Style::dim}, frame.width);
}

} // namespace ostrivane::cli
