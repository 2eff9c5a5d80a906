#include "app/widgets/Sparkline.hpp"

#include "app/widgets/ChartPaint.hpp"
#include "app/widgets/ChartShape.hpp"
#include "app/widgets/ChartText.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QPolygonF>

#include <algorithm>
#include <iterator>

namespace ostrivane {

namespace {

constexpr qreal lineWidth = 1.4;
constexpr qreal areaOpacity = 0.15;

/// The points in view, and the nearest one ahead of them: there the line comes in from outside.
std::span<const TimedValue> inView(std::span<const TimedValue> points, double since) {
    const auto first = std::ranges::lower_bound(points, since, {}, &TimedValue::time);
    return {first == points.begin() ? first : std::prev(first), points.end()};
}

/// A piece of the line: in one stroke, a dot where it has one point.
void drawPiece(QPainter& painter, const QPolygonF& line, double floor, const SparklineLook& look) {
    const QColor colour = Theme::current().colour(look.series);
    if (line.size() == 1) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawEllipse(line.first(), lineWidth, lineWidth);
        return;
    }
    if (look.hasArea && !look.isDashed) {
        QColor area = colour;
        area.setAlphaF(static_cast<float>(areaOpacity));
        QPolygonF filled = line;
        filled << QPointF(line.last().x(), floor) << QPointF(line.first().x(), floor);
        ChartPaint::drawArea(painter, filled, area);
    }
    ChartPaint::drawStroke(painter, line, colour, lineWidth, look.isDashed);
}

} // namespace

void drawSparkline(QPainter& painter, const QRectF& rect, std::span<const TimedValue> points,
                   const SparklineLook& look) {
    if (points.empty() || look.window <= 0 || rect.isEmpty())
        return;
    // Half a line's width stays free above and below, so that neither end of the scale is cut.
    const QRectF plot = rect.adjusted(0, lineWidth / 2, 0, -lineWidth / 2);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(rect, Qt::IntersectClip);
    for (const ChartShape::Run& run : ChartShape::liveRuns(inView(points, look.now - look.window))) {
        QPolygonF line;
        line.reserve(static_cast<qsizetype>(run.size()));
        for (const TimedValue& point : run) {
            const double share = look.top > 0 ? std::clamp(point.value / look.top, 0.0, 1.0) : 0;
            line << QPointF(plot.right() - (look.now - point.time) / look.window * plot.width(),
                            plot.bottom() - share * plot.height());
        }
        drawPiece(painter, line, rect.bottom(), look);
    }
    painter.restore();
}

Sparkline::Sparkline(const QString& name, QWidget* parent) : QWidget(parent) {
    setAccessibleName(name);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Sparkline::set(std::vector<TimedValue> given, const SparklineLook& givenLook) {
    if (given == points && givenLook == look)
        return;
    points = std::move(given);
    look = givenLook;
    update();
}

void Sparkline::setText(std::function<QString(double)> given) {
    text = std::move(given);
}

QString Sparkline::description() const {
    if (!text)
        return {};
    const ChartText::Told line{{}, ChartText::figures(points, look.now - look.window, look.now), text};
    return ChartText::sentence(accessibleName(), ChartText::span(look.window), {&line, 1});
}

QSize Sparkline::sizeHint() const {
    return {Type::px(96), Type::px(28)};
}

QSize Sparkline::minimumSizeHint() const {
    return {Type::px(24), Type::px(16)};
}

void Sparkline::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawSparkline(painter, rect(), points, look);
}

} // namespace ostrivane
