#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>

class QFontMetricsF;
class QPainter;

namespace ostrivane {

struct ShapedText;

/// What more than one widget needs to paint itself.
namespace Paint {

/// `share` of `over` on `under`.
QColor mixed(const QColor& under, const QColor& over, double share);

/// A sheet with round corners; without an edge where `edge` is not valid. The edge lies within `rect`.
void sheet(QPainter& painter, const QRectF& rect, qreal radius, const QColor& fill, const QColor& edge = {});

/// Pixels that a text takes in one line, rounded up.
int textWidth(const QFont& font, const QString& text);

/// One line of text in the painter's font and pen, with `flags` of the toolkit. Mirroring moves it to the other side;
/// its words keep the order of their own script, so that "2.10 W" never reads "W 2.10".
void drawOneLine(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text, int flags = 0);

/// A shaped text in the painter's pen, on one line of `rect`.
/// @param metrics  of the text's font
void draw(QPainter& painter, const QRectF& rect, const QFontMetricsF& metrics, Qt::Alignment alignment,
          const ShapedText& text);

/// One line of text in the painter's pen, elided where it does not fit.
void line(QPainter& painter, const QRect& rect, const QFont& font, const QString& text,
          Qt::Alignment alignment = Qt::AlignLeading | Qt::AlignVCenter, Qt::TextElideMode mode = Qt::ElideRight);

/// A text from outside as a tooltip: never read as marked up, in lines of bearable length.
QString toolTip(const QString& plain);

} // namespace Paint

} // namespace ostrivane
