#include "app/widgets/HistoryChart.hpp"

#include "app/widgets/ChartText.hpp"
#include "app/widgets/Type.hpp"

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr double day = 86400;

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
    const auto meansOf = [&](const std::vector<HistoryPoint>& points) {
        return ChartText::figures(figuresOf(points, false), since, until);
    };
    std::vector<ChartText::Told> told;
    for (const HistoryLine& line : lines)
        told.push_back({line.name, meansOf(line.points), line.text});
    const bool hasSum = isStacked && !lines.empty();
    return ChartText::sentence(accessibleName(), ChartText::span(until - since), told,
                               hasSum ? meansOf(heights().back()) : std::nullopt);
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
    for (const ChartBand& band : bands)
        ChartPaint::drawBand(painter, space, band);
    const auto shown = heights();
    std::vector<LineRuns> drawn;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        drawn.push_back({lines[index].series, lines[index].isDashed, ChartShape::historyRuns(shown[index])});
        if (!isStacked)
            drawn.back().peaks = ChartShape::peakRuns(shown[index]);
    }
    ChartPaint::drawLines(painter, space, std::move(drawn), isStacked);
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
        const HistoryPoint* own = ChartShape::pointAt(line.points, time);
        const HistoryPoint* height = ChartShape::pointAt(shown[index], time);
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
