#include "app/widgets/Paint.hpp"

#include "app/widgets/ShapedText.hpp"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>
#include <QTextDocument>

#include <cmath>

namespace ostrivane::Paint {

namespace {

constexpr qsizetype longest = 512; // characters that can be in view in one line

/// Shaping a text costs in proportion to its length, and what will be cut off needs none of it.
QString bounded(const QString& text, Qt::TextElideMode mode) {
    if (text.size() <= longest)
        return text;
    if (mode == Qt::ElideMiddle)
        return text.left(longest / 2) + QChar(0x2026) + text.right(longest / 2);
    return mode == Qt::ElideLeft ? QChar(0x2026) + text.right(longest) : text.left(longest) + QChar(0x2026);
}

} // namespace

QColor mixed(const QColor& under, const QColor& over, double share) {
    const auto part = [share](double low, double high) { return static_cast<float>(low + (high - low) * share); };
    return QColor::fromRgbF(part(under.redF(), over.redF()), part(under.greenF(), over.greenF()),
                            part(under.blueF(), over.blueF()));
}

void sheet(QPainter& painter, const QRectF& rect, qreal radius, const QColor& fill, const QColor& edge) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush));
    if (edge.isValid()) {
        painter.setPen(QPen(edge, 1));
        painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
    } else {
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(rect, radius, radius);
    }
}

int textWidth(const QFont& font, const QString& text) {
    return static_cast<int>(std::ceil(QFontMetricsF(font).horizontalAdvance(bounded(text, Qt::ElideRight))));
}

void drawOneLine(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text, int flags) {
    const Qt::LayoutDirection side = painter.layoutDirection();
    const Qt::Alignment placed = QStyle::visualAlignment(side, alignment) | Qt::AlignAbsolute;
    painter.setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(rect, static_cast<int>(placed) | Qt::TextSingleLine | flags, text);
    painter.setLayoutDirection(side);
}

void draw(QPainter& painter, const QRectF& rect, const QFontMetricsF& metrics, Qt::Alignment alignment,
          const ShapedText& text) {
    const Qt::Alignment side = QStyle::visualAlignment(painter.layoutDirection(), alignment);
    const qreal left = side & Qt::AlignRight     ? rect.right() - text.width
                       : side & Qt::AlignHCenter ? rect.center().x() - text.width / 2
                                                 : rect.left();
    const qreal baseline = side & Qt::AlignTop      ? rect.top() + metrics.ascent()
                           : side & Qt::AlignBottom ? rect.bottom() - metrics.descent()
                                                    : rect.center().y() + (metrics.ascent() - metrics.descent()) / 2;
    if (text.isTall) {
        painter.save();
        painter.setClipRect(rect, Qt::IntersectClip);
    }
    text.draw(painter, {left, baseline});
    if (text.isTall)
        painter.restore();
}

void line(QPainter& painter, const QRect& rect, const QFont& font, const QString& text, Qt::Alignment alignment,
          Qt::TextElideMode mode) {
    if (text.isEmpty() || rect.isEmpty())
        return;
    const ShapedText shaped = ShapedText::fitting(font, bounded(text, mode), rect.width(), mode);
    draw(painter, rect, QFontMetricsF(font), alignment, shaped);
}

QString toolTip(const QString& plain) {
    constexpr qsizetype oneLine = 80;
    constexpr qsizetype most = 1000;
    if (plain.size() <= oneLine && !Qt::mightBeRichText(plain))
        return plain;
    const QString cut = plain.size() > most ? plain.left(most) + QChar(0x2026) : plain;
    return QStringLiteral("<qt>%1</qt>").arg(cut.toHtmlEscaped());
}

} // namespace ostrivane::Paint
