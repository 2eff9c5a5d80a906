#include "app/widgets/LiveChart.hpp"

#include "app/widgets/ChartText.hpp"
#include "app/widgets/Type.hpp"

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr double shownSpan = 300; // seconds

} // namespace

LiveChart::LiveChart(const QString& name, QWidget* parent) : Chart(name, parent) {
    refresh();
}

void LiveChart::setAxis(ChartAxis given) {
    if (given.kind != axis.kind || given.binary != axis.binary)
        scale = {};
    axis = std::move(given);
    refresh();
}

void LiveChart::setStacked(bool stacked) {
    isStacked = stacked;
    refresh();
}

void LiveChart::setThreshold(std::optional<ChartThreshold> given) {
    if (given == threshold)
        return;
    threshold = std::move(given);
    refresh();
}

void LiveChart::setCompact(bool compact) {
    setShowsLabels(!compact);
}

void LiveChart::setLines(std::vector<ChartLine> given, double time) {
    const bool isSame = time == now && std::ranges::equal(given, lines, looksLike<ChartLine>);
    lines = std::move(given);
    now = time;
    if (!isSame)
        refresh();
}

std::vector<std::vector<TimedValue>> LiveChart::heights() const {
    std::vector<std::vector<TimedValue>> points;
    points.reserve(lines.size());
    for (const ChartLine& line : lines)
        points.push_back(line.points);
    return isStacked ? ChartShape::stacked(points) : points;
}

void LiveChart::refresh() {
    double largest = threshold ? threshold->value : 0;
    for (const auto& points : heights()) {
        if (const auto figures = ChartText::figures(points, now - shownSpan, now))
            largest = std::max(largest, figures->highest);
    }
    setView({.since = now - shownSpan, .until = now, .lower = lowerEnd(axis), .upper = scale.top(axis, largest, now)});
}

QString LiveChart::summary() const {
    const auto figuresOf = [&](const std::vector<TimedValue>& points) {
        return ChartText::figures(points, now - shownSpan, now);
    };
    std::vector<ChartText::Told> told;
    for (const ChartLine& line : lines)
        told.push_back({line.name, figuresOf(line.points), line.text});
    const bool hasSum = isStacked && !lines.empty();
    return ChartText::sentence(accessibleName(), ChartText::span(shownSpan), told,
                               hasSum ? figuresOf(heights().back()) : std::nullopt);
}

ChartGrid LiveChart::makeGrid(GridDetail detail) const {
    const int fitting = std::clamp(width() / std::max(1, Type::px(60)), 2, 7);
    return {axisHeights(axis, view().upper, detail), spanTimes(shownSpan, {}, fitting)};
}

void LiveChart::drawLines(QPainter& painter, const ChartSpace& space) const {
    const auto shown = heights();
    std::vector<LineRuns> drawn;
    for (std::size_t index = 0; index < lines.size(); ++index)
        drawn.push_back({lines[index].series, lines[index].isDashed, ChartShape::liveRuns(shown[index])});
    ChartPaint::drawLines(painter, space, std::move(drawn), isStacked);
    if (threshold)
        ChartPaint::drawThreshold(painter, space, *threshold);
}

std::vector<double> LiveChart::sampleTimes() const {
    std::vector<double> times;
    for (const ChartLine& line : lines) {
        for (const TimedValue& point : line.points)
            times.push_back(point.time);
    }
    return ChartShape::timesWithin(now - shownSpan, now, std::move(times));
}

ChartReading LiveChart::reading(double time) const {
    const auto shown = heights();
    ChartReading reading{.at = time, .time = ChartText::clockWithSeconds(time), .rows = {}};
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const ChartLine& line = lines[index];
        const TimedValue* own = ChartShape::pointAt(line.points, time);
        const TimedValue* height = ChartShape::pointAt(shown[index], time);
        reading.rows.push_back({line.series, line.name,
                                own ? ChartText::figure(line.text, own->value) : ChartText::none(),
                                height ? std::optional(height->value) : std::nullopt});
    }
    if (isStacked)
        std::ranges::reverse(reading.rows); // as the parts lie
    return reading;
}

} // namespace ostrivane
