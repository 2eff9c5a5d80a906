#include "app/widgets/StatusGlyph.hpp"

#include "app/widgets/Paint.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

namespace ostrivane {

namespace {

/// All of the shapes are drawn in a square of 16.
void drawMark(QPainter& painter, qreal top, qreal length, bool isInfo) {
    const qreal wide = 1.9;
    const qreal dot = wide * 1.15;
    const qreal gap = 1.5;
    const QRectF stroke(8 - wide / 2, isInfo ? top + dot + gap : top, wide, length);
    const QRectF point(8 - dot / 2, isInfo ? top : top + length + gap, dot, dot);
    painter.drawRoundedRect(stroke, wide / 2, wide / 2);
    painter.drawEllipse(point);
}

void drawTick(QPainter& painter, const QColor& ink) {
    painter.setPen(QPen(ink, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(QPolygonF({{4.7, 8.3}, {7.1, 10.7}, {11.4, 5.7}}));
}

void drawTriangle(QPainter& painter, const QColor& mark) {
    painter.setPen(QPen(mark, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin)); // rounds the corners
    painter.drawPolygon(QPolygonF({{8, 2.2}, {14.6, 13.6}, {1.4, 13.6}}));
    painter.setPen(Qt::NoPen);
}

void drawOctagon(QPainter& painter) {
    constexpr qreal near = 0.6;
    constexpr qreal far = 16 - near;
    constexpr qreal cut = 4.4;
    painter.drawPolygon(QPolygonF({{near + cut, near},
                                   {far - cut, near},
                                   {far, near + cut},
                                   {far, far - cut},
                                   {far - cut, far},
                                   {near + cut, far},
                                   {near, far - cut},
                                   {near, near + cut}}));
}

} // namespace

Condition conditionOf(HealthCategory::Status status) {
    switch (status) {
    case HealthCategory::Status::good:
        return Condition::good;
    case HealthCategory::Status::elevated:
        return Condition::elevated;
    case HealthCategory::Status::high:
        return Condition::high;
    case HealthCategory::Status::unknown:
        return Condition::unknown;
    }
    return Condition::unknown;
}

Condition conditionOf(AlertSeverity severity) {
    switch (severity) {
    case AlertSeverity::info:
        return Condition::info;
    case AlertSeverity::warning:
        return Condition::elevated;
    case AlertSeverity::critical:
        return Condition::high;
    }
    return Condition::info;
}

void drawStatusGlyph(QPainter& painter, const QRectF& rect, Condition condition) {
    const Theme& theme = Theme::current();
    const StatusColours colours = theme.colours(condition);
    const QColor mark = condition == Condition::info ? colours.text : colours.mark;
    const QColor ink = theme.card;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.topLeft());
    painter.scale(rect.width() / 16, rect.height() / 16);
    painter.setPen(Qt::NoPen);
    painter.setBrush(mark);
    switch (condition) {
    case Condition::good:
        painter.drawEllipse(QRectF(0.5, 0.5, 15, 15));
        drawTick(painter, ink);
        break;
    case Condition::elevated:
        drawTriangle(painter, mark);
        painter.setBrush(ink);
        drawMark(painter, 5.2, 4.2, false);
        break;
    case Condition::high:
        drawOctagon(painter);
        painter.setBrush(ink);
        drawMark(painter, 3.6, 5.2, false);
        break;
    case Condition::info:
        painter.drawEllipse(QRectF(0.5, 0.5, 15, 15));
        painter.setBrush(ink);
        drawMark(painter, 3.8, 5, true);
        break;
    case Condition::unknown:
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(mark, 1.5));
        painter.drawEllipse(QRectF(1.5, 1.5, 13, 13));
        painter.setPen(QPen(mark, 1.7, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(5.2, 8), QPointF(10.8, 8));
        break;
    }
    painter.restore();
}

StatusGlyph::StatusGlyph(Condition shown, int pixels, QWidget* parent)
    : QWidget(parent), condition(shown), size(pixels) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void StatusGlyph::set(Condition shown, const QString& told) {
    word = told;
    if (shown == condition)
        return;
    condition = shown;
    update();
}

QSize StatusGlyph::sizeHint() const {
    return {Type::px(size), Type::px(size)};
}

void StatusGlyph::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawStatusGlyph(painter, rect(), condition);
}

} // namespace ostrivane
