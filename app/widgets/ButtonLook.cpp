#include "app/widgets/ButtonLook.hpp"

#include "app/widgets/Paint.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QPolygonF>

namespace ostrivane::ButtonLook {

namespace {

/// A filled button answers to the pointer by growing darker, so that its lettering stays readable.
QColor filled(const QColor& fill, State state) {
    return state.isPressed ? fill.darker(125) : state.isHovered ? fill.darker(110) : fill;
}

} // namespace

QColor drawGround(QPainter& painter, const QRect& rect, ButtonKind kind, State state) {
    const Theme& theme = Theme::current();
    const int radius = Type::px(6);
    if (!state.isEnabled) {
        Paint::sheet(painter, rect, radius, {}, theme.border);
        return theme.text3;
    }
    if (kind == ButtonKind::primary || kind == ButtonKind::confirming) {
        const bool isPrimary = kind == ButtonKind::primary;
        Paint::sheet(painter, rect, radius, filled(isPrimary ? theme.accentFill : theme.dangerFill, state));
        return isPrimary ? theme.onAccent : theme.onDanger;
    }
    const QColor ground = state.isPressed ? theme.track : state.isHovered ? theme.hover : theme.card;
    Paint::sheet(painter, rect, radius, ground, theme.border);
    return kind == ButtonKind::destructive ? theme.high.text : theme.text;
}

State stateOf(const QAbstractButton& button) {
    return {button.isEnabled(), button.underMouse(), button.isDown()};
}

void drawChevron(QPainter& painter, const QRectF& rect, const QColor& ink) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink, Type::px(13) / 10.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const QPointF middle = rect.center();
    const qreal half = Type::px(40) / 10.0;
    painter.drawPolyline(QPolygonF(
        {middle + QPointF(-half, -half / 2), middle + QPointF(0, half / 2), middle + QPointF(half, -half / 2)}));
    painter.restore();
}

} // namespace ostrivane::ButtonLook
