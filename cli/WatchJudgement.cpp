#include "cli/WatchJudgement.hpp"

#include "cli/JudgementText.hpp"
#include "cli/WatchState.hpp"
#include "cli/WatchTable.hpp"
#include "cli/Wording.hpp"
#include "core/model/Text.hpp"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace ostrivane::cli {

namespace {

void append(std::vector<StyledLine>& lines, std::string_view heading, std::vector<StyledLine> part) {
    lines.push_back({});
    lines.push_back({{std::string(heading), Style::accent}});
    lines.insert(lines.end(), std::make_move_iterator(part.begin()), std::make_move_iterator(part.end()));
}

} // namespace

std::vector<StyledLine> judgementLines(const WatchJudgement& judgement, int width) {
    if (judgement.health.empty())
        return {{{"Nothing was judged yet.", Style::dim}}};
    std::vector<StyledLine> lines;
    for (std::string& line : wrapped(Text::visible(judgement.summary), "", width))
        lines.push_back({{std::move(line), Style::bold}});
    append(lines, "Health", healthLines(judgement.health, width));
    append(lines, "Insights", insightLines(judgement.insights, width));
    append(lines, "Last alerts", alertLines(judgement.alerts, width));
    return lines;
}

std::vector<StyledLine> presentJudgement(const SystemSnapshot& snapshot, const WatchState& state,
                                         const WatchFrame& frame) {
    std::vector<StyledLine> lines = presentHeader(snapshot, state, frame);
    const std::vector<StyledLine> text = judgementLines(frame.judgement, frame.width);
    const std::size_t first = std::min(state.reading.top, text.size());
    const std::size_t last = std::min(text.size(), first + static_cast<std::size_t>(readingRows(frame.height)));
    lines.insert(lines.end(), text.begin() + static_cast<std::ptrdiff_t>(first),
                 text.begin() + static_cast<std::ptrdiff_t>(last));
    return lines;
}

} // namespace ostrivane::cli
