#include "app/widgets/ChartReadout.hpp"

#include "app/widgets/Type.hpp"

#include <QFontMetricsF>
#include <QPainter>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace ostrivane::ChartReadout {

QRectF place(const QSizeF& size, const QRectF& bounds, qreal x) {
    const qreal gap = Type::px(8);
    qreal left = x + gap;
    if (left + size.width() > bounds.right())
        left = x - gap - size.width();
    left = std::max(bounds.left(), std::min(left, bounds.right() - size.width()));
    const qreal top = std::max(bounds.top(), std::min(bounds.top() + Type::px(6), bounds.bottom() - size.height()));
    return {QPointF(std::round(left), std::round(top)), size};
}

void drawCursor(QPainter& painter, const ChartSpace& space, const ChartReading& reading) {
    const Theme& theme = Theme::current();
    const qreal x = space.x(reading.at);
    QPen dashes(theme.text2, 1, Qt::CustomDashLine, Qt::FlatCap);
    dashes.setDashPattern({2, 2});
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(dashes);
    const qreal middle = std::floor(std::min(x, space.plot.right() - 1)) + 0.5;
    painter.drawLine(QPointF(middle, space.plot.top()), QPointF(middle, space.plot.bottom()));
    painter.setRenderHint(QPainter::Antialiasing);
    for (const ChartReading::Row& row : reading.rows) {
        if (!row.height)
            continue;
        const qreal y = std::clamp(space.y(*row.height), space.plot.top(), space.plot.bottom());
        painter.setPen(QPen(theme.colour(row.series), 1.5));
        painter.setBrush(theme.card);
        painter.drawEllipse(QPointF(x, y), 3.25, 3.25);
    }
}

void drawBox(QPainter& painter, const ChartSpace& space, const ChartReading& reading, const QRectF& bounds) {
    const Theme& theme = Theme::current();
    const QFont font = Type::font(TypeRole::caption);
    const QFont strong = Type::font(TypeRole::captionStrong);
    const QFontMetricsF metrics(font);
    const qreal line = Type::px(15);
    const qreal side = Type::px(9);
    const qreal between = Type::px(14);

    // A long name gives way, the time and the figures never do.
    const qreal most = std::max(bounds.width(), 0.0) - 2 * side;
    qreal names = 0;
    qreal values = 0;
    for (const ChartReading::Row& row : reading.rows) {
        names = std::max(names, metrics.horizontalAdvance(row.name));
        values = std::max(values, metrics.horizontalAdvance(row.value));
    }
    const qreal least = std::max<qreal>(QFontMetricsF(strong).horizontalAdvance(reading.time), Type::px(90));
    const qreal inner = std::min(std::max(least, std::ceil(names + between + values)), most);
    const QSizeF size(inner + 2 * side, line * static_cast<qreal>(reading.rows.size() + 1) + Type::px(10));
    const QRectF box = place(size, bounds, space.x(reading.at));

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.tooltip);
    painter.drawRoundedRect(box, Type::px(5), Type::px(5));
    painter.setPen(theme.onTooltip);
    QRectF row(box.left() + side, box.top() + Type::px(5), inner, line);
    painter.setFont(strong);
    painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, reading.time);
    painter.setFont(font);
    for (const ChartReading::Row& told : reading.rows) {
        row.translate(0, line);
        const qreal value = metrics.horizontalAdvance(told.value);
        painter.drawText(row, Qt::AlignRight | Qt::AlignVCenter | Qt::TextDontClip, told.value);
        const qreal room = inner - value - between / 2;
        painter.drawText(QRectF(row.left(), row.top(), room, line), Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(told.name, Qt::ElideRight, room));
    }
}

QString sentence(const ChartReading& reading) {
    QStringList figures;
    for (const ChartReading::Row& row : reading.rows)
        figures << row.name + QLatin1Char(' ') + row.value;
    return QStringLiteral("At ") + reading.time + QStringLiteral(": ") + figures.join(QStringLiteral(", ")) +
           QLatin1Char('.');
}

} // namespace ostrivane::ChartReadout
