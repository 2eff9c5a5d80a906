#include "app/widgets/ChartPaint.hpp"

#include "app/widgets/Type.hpp"

#include <QFontMetricsF>
#include <QLineF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrivane::ChartPaint {

namespace {

/// Onto the middle of a pixel, where a line of one pixel is sharp.
qreal crisp(qreal value) {
    return std::floor(value) + 0.5;
}

QPolygonF polygon(const ChartSpace& space, std::span<const TimedValue> run) {
    QPolygonF line;
    line.reserve(static_cast<qsizetype>(run.size()) + 2);
    for (const TimedValue& point : run)
        line << QPointF(space.x(point.time), space.y(point.value));
    return line;
}

QColor withOpacity(QColor colour, qreal opacity) {
    colour.setAlphaF(static_cast<float>(opacity));
    return colour;
}

void drawTimes(QPainter& painter, const QRectF& plot, const std::vector<GridTime>& times) {
    const QFontMetricsF metrics(painter.font());
    const qreal gap = Type::px(10);
    const qreal top = plot.bottom() + Type::px(3);
    const qreal height = Type::lineHeight(TypeRole::caption);
    const auto place = [&](const GridTime& time) {
        const qreal width = metrics.horizontalAdvance(time.label);
        const qreal middle = plot.left() + time.share * plot.width();
        const qreal left = std::clamp(middle - width / 2, plot.left(), std::max(plot.left(), plot.right() - width));
        return QRectF(left, top, width + 1, height);
    };
    // The newest is always told, then the oldest, then what fits between.
    qreal free = plot.left();
    const qreal end = times.empty() ? 0 : place(times.back()).left();
    for (std::size_t at = 0; at < times.size(); ++at) {
        const QRectF rect = place(times[at]);
        const bool isLast = at + 1 == times.size();
        if (times[at].label.isEmpty() || (!isLast && (rect.left() < free || rect.right() + gap > end)))
            continue;
        painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, times[at].label);
        free = rect.right() + gap;
    }
}

} // namespace

int axisWidth(const ChartGrid& grid) {
    const QFontMetricsF metrics(Type::font(TypeRole::caption));
    qreal widest = 0;
    for (const GridHeight& height : grid.heights)
        widest = std::max(widest, metrics.horizontalAdvance(height.label));
    return std::max(Type::px(46), Type::px(8) + static_cast<int>(std::ceil(widest)));
}

void drawGrid(QPainter& painter, const QRectF& plot, const ChartGrid& grid, qreal width) {
    const Theme& theme = Theme::current();
    const qreal bottom = plot.bottom();
    for (const GridTime& time : grid.times) {
        if (time.share <= 0 || time.share >= 1)
            continue;
        const qreal x = crisp(plot.left() + time.share * plot.width());
        painter.setPen(theme.grid);
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, bottom));
    }
    painter.setFont(Type::font(TypeRole::caption));
    const qreal line = Type::lineHeight(TypeRole::caption);
    for (const GridHeight& height : grid.heights) {
        const qreal y = crisp(bottom - height.share * plot.height() - (height.share > 0 ? 0 : 0.5));
        painter.setPen(height.isBase ? theme.border : theme.grid);
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        if (height.label.isEmpty())
            continue;
        painter.setPen(theme.text3);
        const qreal left = plot.right() + Type::px(8);
        painter.drawText(QRectF(left, y - line / 2, width - left, line),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, height.label);
    }
    painter.setPen(theme.text3);
    drawTimes(painter, plot, grid.times);
}

void drawStroke(QPainter& painter, const QPolygonF& line, const QColor& colour, qreal width, bool isDashed) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    QPen pen(colour, width, Qt::SolidLine, isDashed || width <= 1 ? Qt::FlatCap : Qt::RoundCap, Qt::BevelJoin);
    if (isDashed)
        pen.setDashPattern({4 / width, 3 / width});
    if (width <= 1 && !isDashed) {
        painter.setPen(pen);
        painter.drawPolyline(line);
        return;
    }
    // A wide line of many points costs ten times as much in one piece as in several.
    constexpr qsizetype piece = 8;
    qreal length = 0;
    for (qsizetype first = 0; first + 1 < line.size(); first += piece - 1) {
        const qsizetype count = std::min(piece, line.size() - first);
        if (isDashed)
            pen.setDashOffset(length / width);
        painter.setPen(pen);
        painter.drawPolyline(line.constData() + first, static_cast<int>(count));
        for (qsizetype at = first + 1; isDashed && at < first + count; ++at)
            length += QLineF(line[at - 1], line[at]).length();
    }
}

void drawArea(QPainter& painter, const QPolygonF& outline, const QColor& colour) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPolygon(outline);
}

void drawRun(QPainter& painter, const ChartSpace& space, std::span<const TimedValue> run, const RunLook& look,
             std::span<const TimedValue> floor) {
    if (run.empty())
        return;
    const QColor colour = withOpacity(Theme::current().colour(look.series), look.opacity);
    const QPolygonF line = polygon(space, run);
    painter.setRenderHint(QPainter::Antialiasing);
    if (line.size() == 1) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawEllipse(line.first(), look.width, look.width);
        return;
    }
    if (look.areaOpacity > 0) {
        QPolygonF area = line;
        if (floor.empty()) {
            const qreal base = std::min(space.y(std::max(0.0, space.lower)), space.plot.bottom());
            area << QPointF(line.last().x(), base) << QPointF(line.first().x(), base);
        } else {
            const QPolygonF below = polygon(space, floor);
            std::for_each(below.rbegin(), below.rend(), [&](const QPointF& point) { area << point; });
        }
        drawArea(painter, area, withOpacity(colour, look.areaOpacity));
    }
    drawStroke(painter, line, colour, look.width, look.isDashed);
}

void drawLines(QPainter& painter, const ChartSpace& space, std::vector<LineRuns> lines, bool areStacked) {
    const double column = (space.until - space.since) / (space.plot.width() * painter.device()->devicePixelRatioF());
    const auto thin = [&](std::vector<ChartShape::Run>& runs) {
        for (auto& run : runs)
            run = ChartShape::thinned(run, space.since, space.until, column);
    };
    const std::vector<ChartShape::Run>* below = nullptr;
    for (LineRuns& line : lines) {
        thin(line.runs);
        thin(line.peaks);
        for (const auto& run : line.peaks)
            drawRun(painter, space, run, {.series = line.series, .width = 1, .opacity = 0.5});
        RunLook look{.series = line.series, .isDashed = line.isDashed};
        if (areStacked)
            look.areaOpacity = partOpacity;
        else if (!look.isDashed && space.lower <= 0) // an area starts at zero
            look.areaOpacity = areaOpacity;
        for (std::size_t at = 0; at < line.runs.size(); ++at) {
            std::span<const TimedValue> floor;
            if (areStacked && below && at < below->size())
                floor = (*below)[at];
            drawRun(painter, space, line.runs[at], look, floor);
        }
        if (!line.runs.empty())
            below = &line.runs;
    }
}

void drawThreshold(QPainter& painter, const ChartSpace& space, const ChartThreshold& threshold) {
    const StatusColours high = Theme::current().high;
    const qreal y = crisp(space.y(threshold.value));
    if (y < space.plot.top() || y > space.plot.bottom())
        return;
    QPen pen(high.mark, 1, Qt::CustomDashLine, Qt::FlatCap);
    pen.setDashPattern({4, 3});
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(pen);
    painter.drawLine(QPointF(space.plot.left(), y), QPointF(space.plot.right(), y));
    const QFont font = Type::font(TypeRole::caption);
    const qreal line = Type::lineHeight(TypeRole::caption);
    const bool isBelow = y - line - 1 < space.plot.top(); // there is no room above it
    const QRectF rect(space.plot.left() + 2, isBelow ? y + 2 : y - line - 1, space.plot.width() - 4, line);
    painter.setFont(font);
    painter.setPen(high.text);
    painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetricsF(font).elidedText(threshold.caption, Qt::ElideRight, rect.width()));
}

void drawBand(QPainter& painter, const ChartSpace& space, const ChartBand& band) {
    const qreal left = std::max(space.x(band.from), space.plot.left());
    const qreal right = std::min(space.x(band.to), space.plot.right());
    if (right <= left)
        return;
    const Theme& theme = Theme::current();
    const QRectF rect(left, space.plot.top(), right - left, space.plot.height());
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(rect, withOpacity(theme.accent, 0.1));
    const QFont font = Type::font(TypeRole::caption);
    const QFontMetricsF metrics(font);
    const qreal room = rect.width() - Type::px(8);
    if (band.name.isEmpty() || room < metrics.averageCharWidth() * 4)
        return;
    painter.setFont(font);
    painter.setPen(theme.text2);
    painter.drawText(QRectF(left + Type::px(4), rect.top(), room, Type::lineHeight(TypeRole::caption)),
                     Qt::AlignLeft | Qt::AlignVCenter, metrics.elidedText(band.name, Qt::ElideRight, room));
}

} // namespace ostrivane::ChartPaint
