#include "app/widgets/Bar.hpp"

#include "app/widgets/Paint.hpp"
#include "app/widgets/Type.hpp"

#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

qreal radiusOf(const QRectF& rect) {
    return std::min(rect.height() / 2, Type::px(4) * 1.0);
}

/// What is no number takes no room.
double bounded(double share) {
    return std::isfinite(share) ? std::clamp(share, 0.0, 1.0) : 0.0;
}

/// The place of the part from `before` to `before` + `share` of a bar, from its leading end.
QRectF placeOf(const QRectF& whole, double before, double share, bool mirrored) {
    const qreal start = whole.width() * before;
    const qreal wide = whole.width() * std::min(share, 1 - before);
    return {mirrored ? whole.right() - start - wide : whole.left() + start, whole.top(), wide, whole.height()};
}

void drawParts(QPainter& painter, const QRectF& whole, const std::vector<BarPart>& parts, bool mirrored) {
    const Theme& theme = Theme::current();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(whole, radiusOf(whole), radiusOf(whole));
    painter.fillPath(shape, theme.track);
    painter.setClipPath(shape);
    double before = 0;
    for (const BarPart& part : parts) {
        const double share = bounded(part.share);
        const QRectF place = placeOf(whole, before, share, mirrored);
        painter.fillRect(place, theme.colour(part.series));
        before = std::min(1.0, before + share);
        if (parts.size() > 1 && share > 0 && before < 1) // apart from the next one, or from what is free
            painter.fillRect(QRectF(mirrored ? place.left() : place.right() - 1, place.top(), 1, place.height()),
                             theme.card);
    }
    painter.restore();
}

} // namespace

Bar::Bar(int pixels, QWidget* parent) : QWidget(parent), height(pixels) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Bar::set(std::vector<BarPart> shares, const QString& name) {
    nameForAccessibility(*this, name);
    if (shares == parts)
        return;
    parts = std::move(shares);
    update();
}

QSize Bar::sizeHint() const {
    return {Type::px(120), Type::px(height)};
}

QSize Bar::minimumSizeHint() const {
    return {Type::px(24), Type::px(height)};
}

void Bar::draw(QPainter& painter, const QRectF& rect, double share, Series series) {
    drawParts(painter, rect, {{series, share}}, painter.layoutDirection() == Qt::RightToLeft);
}

QString Bar::accessibleSentence() const {
    QStringList named;
    for (const BarPart& part : parts)
        named << (part.name.isEmpty() ? QStringLiteral("%1%").arg(std::floor(bounded(part.share) * 100)) : part.name);
    return named.join(QStringLiteral(", "));
}

void Bar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawParts(painter, rect(), parts, layoutDirection() == Qt::RightToLeft);
}

bool Bar::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    double before = 0;
    for (const BarPart& part : parts) {
        const double share = bounded(part.share);
        if (!part.name.isEmpty() &&
            placeOf(rect(), before, share, layoutDirection() == Qt::RightToLeft).contains(help->pos())) {
            QToolTip::showText(help->globalPos(), Paint::toolTip(part.name), this);
            return true;
        }
        before = std::min(1.0, before + share);
    }
    return QWidget::event(event);
}

} // namespace ostrivane
