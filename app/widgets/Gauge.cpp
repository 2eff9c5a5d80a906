#include "app/widgets/Gauge.hpp"

#include "app/widgets/Numbers.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

constexpr double diameter = 104;
constexpr double tall = 92; // an arc of 270 degrees ends above the foot of its circle
constexpr double thickness = 10;
constexpr int sixteenth = 16;
constexpr int start = 225 * sixteenth;
constexpr int sweep = -270 * sixteenth;

} // namespace

Gauge::Gauge(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Gauge::set(double share, const QString& figure, const QString& below, Condition shown, const QString& name) {
    nameForAccessibility(*this, name);
    const double bounded = std::isfinite(share) ? std::clamp(share, 0.0, 1.0) : 0.0;
    if (bounded == fraction && figure == value && below == caption && shown == condition)
        return;
    fraction = bounded;
    value = figure;
    caption = below;
    condition = shown;
    update();
}

QSize Gauge::sizeHint() const {
    return {Type::px(diameter), Type::px(tall)};
}

QString Gauge::accessibleSentence() const {
    return QStringLiteral("%1 %2").arg(value, caption).trimmed();
}

void Gauge::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme& theme = Theme::current();
    const qreal thick = Type::px(thickness);
    const QRectF circle((width() - Type::px(diameter)) / 2.0, 0, Type::px(diameter), Type::px(diameter));
    const QRectF arc = circle.adjusted(thick / 2 + 1, thick / 2 + 1, -thick / 2 - 1, -thick / 2 - 1);
    painter.setPen(QPen(theme.track, thick, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(arc, start, sweep);
    if (fraction > 0) {
        painter.setPen(QPen(theme.colours(condition).mark, thick, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(arc, start, static_cast<int>(std::lround(sweep * fraction)));
    }
    const int line = Type::lineHeight(TypeRole::gaugeValue);
    const QRectF figure(circle.left(), circle.center().y() - line * 0.65, circle.width(), line);
    painter.setPen(theme.text);
    Numbers::draw(painter, figure, Type::font(TypeRole::gaugeValue), Qt::AlignCenter, value);
    const QRect below(static_cast<int>(arc.left() + thick), static_cast<int>(figure.bottom()),
                      static_cast<int>(arc.width() - 2 * thick), Type::lineHeight(TypeRole::caption));
    painter.setPen(theme.text2);
    Paint::line(painter, below, Type::font(TypeRole::caption), caption, Qt::AlignCenter);
}

} // namespace ostrivane
