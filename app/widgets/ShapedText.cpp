#include "app/widgets/ShapedText.hpp"

#include <QFont>
#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr qreal tallest = 1.5;             ///< of the font's height: no script needs more
constexpr qsizetype mostRemembered = 1500; ///< more than a full window shows

struct Key {
    QFont font;
    QString text;
    qreal room = -1; ///< negative: all of it is wanted
    Qt::TextElideMode mode = Qt::ElideNone;

    friend bool operator==(const Key&, const Key&) = default;
    friend size_t qHash(const Key& key, size_t seed = 0) {
        return qHashMulti(seed, key.font, key.text, key.room, static_cast<int>(key.mode));
    }
};

QHash<Key, ShapedText>& remembered() {
    static QHash<Key, ShapedText> texts;
    if (texts.size() >= mostRemembered)
        texts.clear();
    return texts;
}

ShapedText shape(const QFont& font, const QString& text) {
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    option.setWrapMode(QTextOption::NoWrap);
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    QTextLayout layout(text, font);
    layout.setTextOption(option);
    layout.setCacheEnabled(true);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    if (!line.isValid())
        return {};
    ShapedText shaped{line.glyphRuns(), line.naturalTextWidth()};
    qreal high = 0;
    for (const QGlyphRun& run : shaped.runs)
        high = std::max(high, run.boundingRect().height());
    shaped.isTall = high > tallest * QFontMetricsF(font).height();
    for (QGlyphRun& run : shaped.runs) {
        QList<QPointF> positions = run.positions();
        for (QPointF& position : positions)
            position.ry() -= line.ascent();
        run.setPositions(positions);
    }
    return shaped;
}

} // namespace

ShapedText ShapedText::of(const QFont& font, const QString& text) {
    QHash<Key, ShapedText>& known = remembered();
    const Key key{font, text};
    if (const auto found = known.constFind(key); found != known.constEnd())
        return *found;
    return *known.insert(key, shape(font, text));
}

ShapedText ShapedText::fitting(const QFont& font, const QString& text, qreal room, Qt::TextElideMode mode) {
    if (room <= 0)
        return {};
    if (ShapedText whole = of(font, text); whole.width <= room)
        return whole;
    QHash<Key, ShapedText>& known = remembered();
    const Key key{font, text, room, mode};
    if (const auto found = known.constFind(key); found != known.constEnd())
        return *found;
    return *known.insert(key, shape(font, QFontMetricsF(font).elidedText(text, mode, room)));
}

void ShapedText::draw(QPainter& painter, QPointF start) const {
    for (const QGlyphRun& run : runs)
        painter.drawGlyphRun(start, run);
}

} // namespace ostrivane
