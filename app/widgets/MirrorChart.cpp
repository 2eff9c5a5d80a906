#include "app/widgets/MirrorChart.hpp"

#include "app/widgets/ChartText.hpp"
#include "app/widgets/Type.hpp"

#include <algorithm>
#include <array>

namespace ostrivane {

namespace {

constexpr double shownSpan = 300; // seconds

/// What goes down has negative heights.
std::vector<TimedValue> turned(std::vector<TimedValue> points) {
    for (TimedValue& point : points)
        point.value = -point.value;
    return points;
}

double largest(const ChartLine& line, double now) {
    const auto figures = ChartText::figures(line.points, now - shownSpan, now);
    return figures ? figures->highest : 0;
}

} // namespace

MirrorChart::MirrorChart(const QString& name, QWidget* parent) : Chart(name, parent) {
    refresh();
}

void MirrorChart::setAxis(ChartAxis given) {
    if (given.kind != axis.kind || given.binary != axis.binary) {
        upScale = {};
        downScale = {};
    }
    axis = std::move(given);
    refresh();
}

void MirrorChart::setLines(ChartLine givenUp, ChartLine givenDown, double time) {
    const bool isSame = time == now && looksLike(givenUp, up) && looksLike(givenDown, down);
    up = std::move(givenUp);
    down = std::move(givenDown);
    now = time;
    if (!isSame)
        refresh();
}

void MirrorChart::refresh() {
    ends = mirrorEnds(axis, upScale.top(axis, largest(up, now), now), downScale.top(axis, largest(down, now), now));
    setView({.since = now - shownSpan, .until = now, .lower = -ends.down, .upper = ends.up});
}

QString MirrorChart::summary() const {
    const auto told = [&](const ChartLine& line) {
        return ChartText::Told{line.name, ChartText::figures(line.points, now - shownSpan, now), line.text};
    };
    return ChartText::sentence(accessibleName(), ChartText::span(shownSpan), std::array{told(up), told(down)});
}

ChartGrid MirrorChart::makeGrid(GridDetail detail) const {
    const int fitting = std::clamp(width() / std::max(1, Type::px(60)), 2, 7);
    return {mirrorHeights(axis, ends, detail), spanTimes(shownSpan, {}, fitting)};
}

void MirrorChart::drawLines(QPainter& painter, const ChartSpace& space) const {
    ChartPaint::drawLines(painter, space,
                          {{up.series, false, ChartShape::liveRuns(up.points)},
                           {down.series, false, ChartShape::liveRuns(turned(down.points))}},
                          false);
}

std::vector<double> MirrorChart::sampleTimes() const {
    std::vector<double> times;
    for (const auto* points : {&up.points, &down.points}) {
        for (const TimedValue& point : *points)
            times.push_back(point.time);
    }
    return ChartShape::timesWithin(now - shownSpan, now, std::move(times));
}

ChartReading MirrorChart::reading(double time) const {
    ChartReading reading{.at = time, .time = ChartText::clockWithSeconds(time), .rows = {}};
    const auto add = [&](const ChartLine& line, double direction) {
        const TimedValue* point = ChartShape::pointAt(line.points, time);
        reading.rows.push_back({line.series, line.name,
                                point ? ChartText::figure(line.text, point->value) : ChartText::none(),
                                point ? std::optional(direction * point->value) : std::nullopt});
    };
    add(up, 1);
    add(down, -1);
    return reading;
}

} // namespace ostrivane
