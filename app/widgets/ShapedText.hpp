#pragma once

#include <QGlyphRun>
#include <QList>
#include <QPointF>
#include <QString>

class QFont;
class QPainter;

namespace ostrivane {

/// One line of text as glyphs. Shaping takes most of the time that painting a text does, and most of what a tick paints
/// was painted before: the latest texts are remembered. For the main thread.
struct ShapedText {
    QList<QGlyphRun> runs; ///< from where the base line begins
    qreal width = 0;       ///< pixels
    bool isTall = false;   ///< reaches beyond its line, as piles of accents do

    /// The words keep the order of their own script, whichever way the window is laid out.
    static ShapedText of(const QFont& font, const QString& text);

    /// As much of the text as fits, with an ellipsis where that is not all of it; nothing where there is no room.
    static ShapedText fitting(const QFont& font, const QString& text, qreal room, Qt::TextElideMode mode);

    /// In the painter's pen, from the left end of the base line.
    void draw(QPainter& painter, QPointF start) const;
};

} // namespace ostrivane
