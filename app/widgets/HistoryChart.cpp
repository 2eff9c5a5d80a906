#include "app/widgets/HistoryChart.hpp"

#include "app/widgets/ChartText.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double day = 86400;

/// The point whose stretch holds a time; null without one.
const HistoryPoint* pointAt(const std::vector<HistoryPoint>& points, double time) {
    const auto after = std::ranges::upper_bound(points, time, {}, &HistoryPoint::time);
    if (after == points.begin())
        return nullptr;
    const HistoryPoint& point = *std::prev(after);
    return time <= point.time + point.length ? &point : nullptr;
}

/// Means and peaks with their times, as one list.
std::vector<TimedValue> figuresOf(const std::vector<HistoryPoint>& points, bool withPeaks) {
    std::vector<TimedValue> figures;
    figures.reserve(points.size());
    for (const HistoryPoint& point : points) {
        const double value = withPeaks && point.peak ? std::max(*point.peak, point.value) : point.value;
        figures.push_back({ChartShape::middle(point), value});
    }
    return figures;
}

} // namespace

HistoryChart::HistoryChart(const QString& name, QWidget* parent) : Chart(name, parent) {
    // Charts on one axis of time stand one below the other: the labels of all take the same room.
    setReservedLabel(QStringLiteral("50.0 Mbps"));
    refresh();
}

void HistoryChart::setAxis(ChartAxis given) {
    axis = std::move(given);
    refresh();
}

void HistoryChart::setRange(double from, double to) {
    if (from == since && to == until)
        return;
    since = from;
    until = to;
    refresh();
}

void HistoryChart::setLines(std::vector<HistoryLine> given) {
    const bool isSame = std::ranges::equal(given, lines, looksLike<HistoryLine>);
    lines = std::move(given);
    if (!isSame)
        refresh();
}

void HistoryChart::setStacked(bool stacked) {
    isStacked = stacked;
    refresh();
}

void HistoryChart::setThreshold(std::optional<ChartThreshold> given) {
    if (given == threshold)
        return;
    threshold = std::move(given);
    refresh();
}

void HistoryChart::setBands(std::vector<ChartBand> given) {
    if (given == bands)
        return;
    bands = std::move(given);
    refresh();
}

void HistoryChart::setCursor(std::optional<double> time) {
    placeCursor(time);
}

void HistoryChart::userMovedCursor() {
    Q_EMIT cursorMoved(cursor());
}

std::vector<std::vector<HistoryPoint>> HistoryChart::heights() const {
    std::vector<std::vector<HistoryPoint>> points;
    points.reserve(lines.size());
    for (const HistoryLine& line : lines)
        points.push_back(line.points);
    return isStacked ? ChartShape::stacked(points) : points;
}

void HistoryChart::refresh() {
    double largest = threshold ? threshold->value : 0;
    for (const auto& points : heights()) {
        if (const auto figures = ChartText::figures(figuresOf(points, !isStacked), since, until))
            largest = std::max(largest, figures->highest);
    }
    setView({.since = since,
             .until = std::max(until, since + 1),
             .lower = lowerEnd(axis),
             .upper = AxisScale::fit(axis, largest)});
}

QString HistoryChart::summary() const {
    std::vector<ChartText::Told> told;
    const auto tell = [&](const QString& name, const std::vector<HistoryPoint>& points, const HistoryLine& line) {
        told.push_back({name, ChartText::figures(figuresOf(points, false), since, until), line.text});
    };
    if (isStacked && lines.size() > 1) // the sum first
        tell({}, heights().back(), lines.back());
    for (const HistoryLine& line : lines)
        tell(lines.size() > 1 ? line.name : QString(), line.points, line);
    return ChartText::sentence(accessibleName(), ChartText::span(until - since), told);
}

ChartGrid HistoryChart::makeGrid(GridDetail detail) const {
    const int room = std::max(1, width() - Type::px(58));
    const bool isNarrow = room < Type::px(420); // no room for times of the clock
    const int fitting = std::clamp(room / std::max(1, Type::px(isNarrow ? 56 : 90)), 2, 7);
    const double span = until - since;
    return {axisHeights(axis, view().upper, detail),
            isNarrow ? spanTimes(span, QStringLiteral(" ago"), fitting) : clockTimes(since, until, fitting)};
}

void HistoryChart::drawLines(QPainter& painter, const ChartSpace& space) const {
    const double column = (space.until - space.since) / (space.plot.width() * painter.device()->devicePixelRatioF());
    const auto thinned = [&](std::vector<ChartShape::Run> runs) {
        for (auto& run : runs)
            run = ChartShape::thinned(run, space.since, space.until, column);
        return runs;
    };
    for (const ChartBand& band : bands)
        ChartPaint::drawBand(painter, space, band);
    const auto shown = heights();
    std::vector<ChartShape::Run> below;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const auto runs = thinned(ChartShape::historyRuns(shown[index]));
        RunLook look{.series = lines[index].series, .isDashed = lines[index].isDashed};
        if (isStacked)
            look.areaOpacity = ChartPaint::partOpacity;
        else if (!look.isDashed && space.lower <= 0) // an area starts at zero
            look.areaOpacity = ChartPaint::areaOpacity;
        if (!isStacked) {
            for (const auto& run : thinned(ChartShape::peakRuns(shown[index])))
                ChartPaint::drawRun(painter, space, run, {.series = look.series, .width = 1, .opacity = 0.5});
        }
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

std::vector<double> HistoryChart::sampleTimes() const {
    std::vector<double> times;
    for (const HistoryLine& line : lines) {
        for (const HistoryPoint& point : line.points)
            times.push_back(ChartShape::middle(point));
    }
    return ChartShape::timesWithin(since, until, std::move(times));
}

ChartReading HistoryChart::reading(double time) const {
    const auto shown = heights();
    const bool isOneDay = until - since <= day * 1.05;
    ChartReading reading{
        .at = time, .time = isOneDay ? ChartText::clock(time) : ChartText::dayAndClock(time), .rows = {}};
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const HistoryLine& line = lines[index];
        const HistoryPoint* own = pointAt(line.points, time);
        const HistoryPoint* height = pointAt(shown[index], time);
        QString value = own ? ChartText::figure(line.text, own->value) : ChartText::none();
        if (own && own->peak && !isStacked)
            value += QStringLiteral(" (peak ") + ChartText::figure(line.text, *own->peak) + QLatin1Char(')');
        reading.rows.push_back(
            {line.series, line.name, std::move(value), height ? std::optional(height->value) : std::nullopt});
    }
    if (isStacked)
        std::ranges::reverse(reading.rows); // as the parts lie
    return reading;
}

} // namespace ostrivane
