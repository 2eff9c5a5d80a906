#include "cli/WatchView.hpp"

#include "cli/Bar.hpp"
#include "cli/MachineText.hpp"
#include "cli/WatchJudgement.hpp"
#include "cli/WatchState.hpp"
#include "cli/WatchTable.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/SystemSnapshot.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace ostrivane::cli {

namespace {

constexpr int coreColumns = 20; ///< of one core drawn as a bar, at the least
constexpr int coreGap = 2;
constexpr int partGap = 2;          ///< between the parts of the memory in the legend
constexpr int coreTextColumns = 11; ///< index, kind and figure beside the bar

std::vector<StyledLine> header(const SystemSnapshot& snapshot, const WatchFrame& frame) {
    const CPUSnapshot& cpu = snapshot.cpu;
    return {
        spread({MachineText::machine(snapshot), Style::accent}, {MachineText::time(snapshot.timestamp)}, frame.width),
        spread({Text::visible(cpu.brand), Style::dim}, {MachineText::uptime(cpu), Style::dim}, frame.width),
        frame.judgement.health.empty() ? StyledLine() : labelled("Health", {{Text::visible(frame.judgement.summary)}})};
}

std::vector<StyledLine> processor(const SystemSnapshot& snapshot, int width) {
    const CPUSnapshot& cpu = snapshot.cpu;
    const std::string figure = fmt::format(" {:>4}", MachineText::usage(cpu));
    StyledLine bar = Bar::load(cpu.usage, width - labelColumns - Text::columns(figure));
    bar.push_back({figure, Style::bold});
    return {labelled("CPU", std::move(bar)), labelled("", {{MachineText::load(cpu)}}),
            labelled("Load", {{MachineText::loadAverages(cpu)}, {" over 1, 5, 15 min", Style::dim}}),
            labelled("", {{MachineText::cores(cpu), Style::dim}})};
}

StyledLine coreCell(const CoreLoad& core, int width) {
    StyledLine cell{{fmt::format("{:>3} {} ", core.id, MachineText::mark(core.kind)), Style::dim}};
    for (Span& span : Bar::load(core.usage, width - coreTextColumns))
        cell.push_back(std::move(span));
    cell.push_back({fmt::format(" {:>4}", Formatters::percent(core.usage, 0))});
    return cell;
}

/// Cores as bars with their figures, side by side, read down the columns.
std::vector<StyledLine> coreBars(const std::vector<CoreLoad>& cores, int width) {
    if (cores.empty())
        return {};
    const int fitting = std::max(1, (width + coreGap) / (coreColumns + coreGap));
    const int side = std::min(fitting, static_cast<int>(cores.size()));
    const auto rows = static_cast<std::size_t>((static_cast<int>(cores.size()) + side - 1) / side);
    const int cellWidth = (width - (side - 1) * coreGap) / side;
    std::vector<StyledLine> lines(rows);
    for (std::size_t index = 0; index < cores.size(); ++index) {
        StyledLine& line = lines[index % rows];
        if (!line.empty())
            line.push_back({std::string(coreGap, ' ')});
        for (Span& span : coreCell(cores[index], cellWidth))
            line.push_back(std::move(span));
    }
    return lines;
}

/// Cores as one character each, the kinds apart.
std::vector<StyledLine> coreMarks(const std::vector<CoreLoad>& cores, int width) {
    std::vector<StyledLine> lines;
    const auto room = static_cast<std::size_t>(std::max(1, width - labelColumns));
    for (const auto kind : {CoreLoad::Kind::performance, CoreLoad::Kind::efficiency, CoreLoad::Kind::unknown}) {
        StyledLine line;
        for (const CoreLoad& core : cores) {
            if (core.kind != kind)
                continue;
            if (line.size() == room) {
                lines.push_back(labelled(MachineText::mark(kind), std::exchange(line, {})));
            }
            line.push_back(Bar::mark(core.usage));
        }
        if (!line.empty())
            lines.push_back(labelled(MachineText::mark(kind), std::move(line)));
    }
    return lines;
}

std::vector<StyledLine> memoryLines(const MemorySnapshot& memory, int width) {
    const std::vector<MachineText::Part> parts = MachineText::parts(memory);
    std::vector<double> shares;
    shares.reserve(parts.size());
    for (const MachineText::Part& part : parts)
        shares.push_back(memory.total == 0 ? 0 : static_cast<double>(part.bytes) / static_cast<double>(memory.total));
    std::vector<StyledLine> lines{labelled("Memory", {{MachineText::used(memory), Style::bold}}),
                                  labelled("", Bar::parts(shares, width - labelColumns))};
    StyledLine legend;
    for (std::size_t index = 0; index < parts.size(); ++index) {
        const std::string text = fmt::format(" {} {}", parts[index].name, Formatters::bytes(parts[index].bytes));
        const int needed = 1 + Text::columns(text) + (legend.empty() ? 0 : partGap);
        if (!legend.empty() && labelColumns + columns(legend) + needed > width)
            lines.push_back(labelled("", std::exchange(legend, {})));
        if (!legend.empty())
            legend.push_back({std::string(partGap, ' ')});
        legend.push_back(Bar::partMark(index));
        legend.push_back({text});
    }
    if (!legend.empty())
        lines.push_back(labelled("", std::move(legend)));
    const Style gravity = memory.pressure == MemoryPressure::normal    ? Style::good
                          : memory.pressure == MemoryPressure::warning ? Style::warning
                                                                       : Style::critical;
    lines.push_back(labelled("Pressure", {{MachineText::pressure(memory), gravity}}));
    lines.push_back(labelled("Swap", {{MachineText::swap(memory)}}));
    return lines;
}

void append(std::vector<StyledLine>& lines, std::vector<StyledLine> more) {
    lines.insert(lines.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

std::vector<StyledLine> overview(const SystemSnapshot& snapshot, const WatchFrame& frame) {
    const auto room = static_cast<std::size_t>(std::max(frame.height - 1, 0));
    std::vector<StyledLine> lines = header(snapshot, frame);
    append(lines, processor(snapshot, frame.width));
    std::vector<StyledLine> below{{}};
    append(below, memoryLines(snapshot.memory, frame.width));

    std::vector<StyledLine> cores = coreBars(snapshot.cpu.cores, frame.width);
    if (lines.size() + cores.size() + below.size() + 1 > room)
        cores = coreMarks(snapshot.cpu.cores, frame.width);
    append(lines, std::move(cores));
    append(lines, std::move(below));
    return lines;
}

std::vector<StyledLine> page(const SystemSnapshot& snapshot, const WatchState& state, const WatchFrame& frame) {
    if (state.subject())
        return presentTable(snapshot, state, frame);
    return state.page == WatchPage::judgement ? presentJudgement(snapshot, state, frame) : overview(snapshot, frame);
}

} // namespace

std::vector<StyledLine> presentWatch(const SystemSnapshot& snapshot, const WatchState& state, const WatchFrame& frame) {
    std::vector<StyledLine> lines = page(snapshot, state, frame);
    // The last line belongs to the footer, whatever has to go.
    lines.resize(static_cast<std::size_t>(std::max(frame.height, 1)) - 1);
    lines.push_back(presentFooter(state, frame));
    for (StyledLine& line : lines)
        line = fitted(line, frame.width);
    return lines;
}

} // namespace ostrivane::cli
