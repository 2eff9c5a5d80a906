#pragma once

#include <QRectF>
#include <QString>

class QFont;
class QPainter;

namespace ostrivane {

enum class Tone;

/// Figures whose digits are all as wide as each other, so that columns stand still while figures change.
namespace Numbers {

/// Pixels that `draw` takes.
qreal width(const QFont& font, const QString& text);

/// Draws with the painter's pen; all but digits as the font has it. One line, not elided.
void draw(QPainter& painter, const QRectF& rect, const QFont& font, Qt::Alignment alignment, const QString& text);

/// What stands for a figure that there is none of is lighter, unless it has a tone of its own.
Tone toneOf(const QString& figure, Tone usual);

} // namespace Numbers

} // namespace ostrivane
