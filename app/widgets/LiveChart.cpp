#include "app/widgets/LiveChart.hpp"

#include "app/widgets/ChartText.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrivane {

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

void LiveChart::setWindow(double seconds) {
    span = seconds;
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
        if (const auto figures = ChartText::figures(points, now - span, now))
            largest = std::max(largest, figures->highest);
    }
    setView({.since = now - span, .until = now, .lower = lowerEnd(axis), .upper = scale.top(axis, largest, now)});
}

QString LiveChart::summary() const {
    const auto shown = heights();
    std::vector<ChartText::Told> told;
    const auto tell = [&](const QString& name, const std::vector<TimedValue>& points, const ChartLine& line) {
        told.push_back({name, ChartText::figures(points, now - span, now), line.text});
    };
    if (isStacked && lines.size() > 1) // the sum first
        tell({}, shown.back(), lines.back());
    for (const ChartLine& line : lines)
        tell(lines.size() > 1 ? line.name : QString(), line.points, line);
    return ChartText::sentence(accessibleName(), ChartText::span(span), told);
}

ChartGrid LiveChart::makeGrid(GridDetail detail) const {
    const int fitting = std::clamp(width() / std::max(1, Type::px(60)), 2, 7);
    return {axisHeights(axis, view().upper, detail), spanTimes(span, {}, fitting)};
}

void LiveChart::drawLines(QPainter& painter, const ChartSpace& space) const {
    const double column = (space.until - space.since) / (space.plot.width() * painter.device()->devicePixelRatioF());
    const auto runsOf = [&](const std::vector<TimedValue>& points) {
        auto runs = ChartShape::liveRuns(points);
        for (auto& run : runs)
            run = ChartShape::thinned(run, space.since, space.until, column);
        return runs;
    };
    const auto shown = heights();
    std::vector<ChartShape::Run> below;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const auto runs = runsOf(shown[index]);
        RunLook look{.series = lines[index].series, .isDashed = lines[index].isDashed};
        if (isStacked)
            look.areaOpacity = ChartPaint::partOpacity;
        else if (!look.isDashed && space.lower <= 0) // an area starts at zero
            look.areaOpacity = ChartPaint::areaOpacity;
        for (std::size_t at = 0; at < runs.size(); ++at) {
            const bool hasFloor = isStacked && at < below.size();
            ChartPaint::drawRun(painter, space, runs[at], look, hasFloor ? below[at] : ChartShape::Run());
        }
        if (!runs.empty())
            below = runs;
    }
    if (threshold)
        ChartPaint::drawThreshold(painter, space, *threshold);
}

std::vector<double> LiveChart::sampleTimes() const {
    std::vector<double> times;
    for (const ChartLine& line : lines) {
        for (const TimedValue& point : line.points)
            times.push_back(point.time);
    }
    return ChartShape::timesWithin(now - span, now, std::move(times));
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
