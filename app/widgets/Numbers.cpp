#include "app/widgets/Numbers.hpp"

#include "app/widgets/Paint.hpp"

#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <array>

namespace ostrivane::Numbers {

namespace {

/// How wide the digits of a font are.
struct Digits {
    std::array<qreal, 10> widths{};
    qreal cell = 0;       ///< of the widest
    bool areEven = false; ///< the font itself makes them equally wide
};

const Digits& digitsOf(const QFont& font) {
    static QHash<QFont, Digits> known;
    const auto found = known.constFind(font);
    if (found != known.constEnd())
        return *found;
    if (known.size() > 64) // the lettering has a dozen; more means that its size changed
        known.clear();
    const QFontMetricsF metrics(font);
    Digits measured;
    for (std::size_t digit = 0; digit < measured.widths.size(); ++digit)
        measured.widths[digit] = metrics.horizontalAdvance(QChar(u'0' + static_cast<char16_t>(digit)));
    const auto [least, most] = std::minmax_element(measured.widths.begin(), measured.widths.end());
    measured.cell = *most;
    measured.areEven = *most - *least < 0.05;
    return *known.insert(font, measured);
}

bool isDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

/// Calls `run(text, width)` for each stretch without digits and `digit(text, own width)` for each digit.
template <class Run, class Digit>
void walk(const Digits& digits, const QFontMetricsF& metrics, const QString& text, Run run, Digit digit) {
    qsizetype at = 0;
    while (at < text.size()) {
        if (isDigit(text[at])) {
            digit(text.mid(at, 1), digits.widths[static_cast<std::size_t>(text[at].unicode() - u'0')]);
            ++at;
            continue;
        }
        qsizetype end = at;
        while (end < text.size() && !isDigit(text[end]))
            ++end;
        const QString part = text.mid(at, end - at);
        run(part, metrics.horizontalAdvance(part));
        at = end;
    }
}

bool isPlain(const Digits& digits, const QString& text) {
    return digits.areEven || text.isRightToLeft() || std::none_of(text.begin(), text.end(), isDigit);
}

} // namespace

qreal width(const QFont& font, const QString& text) {
    const Digits& digits = digitsOf(font);
    const QFontMetricsF metrics(font);
    if (isPlain(digits, text))
        return metrics.horizontalAdvance(text);
    qreal sum = 0;
    walk(
        digits, metrics, text, [&](const QString&, qreal wide) { sum += wide; },
        [&](const QString&, qreal) { sum += digits.cell; });
    return sum;
}

void draw(QPainter& painter, const QRectF& rect, const QFont& font, Qt::Alignment alignment, const QString& text) {
    painter.setFont(font);
    const Digits& digits = digitsOf(font);
    if (isPlain(digits, text)) {
        Paint::drawOneLine(painter, rect, alignment, text, Qt::TextDontClip);
        return;
    }
    const QFontMetricsF metrics(font);
    const Qt::Alignment side = QStyle::visualAlignment(painter.layoutDirection(), alignment);
    const qreal wide = width(font, text);
    qreal x = side & Qt::AlignRight     ? rect.right() - wide
              : side & Qt::AlignHCenter ? rect.center().x() - wide / 2
                                        : rect.left();
    const qreal baseline = alignment & Qt::AlignTop ? rect.top() + metrics.ascent()
                           : alignment & Qt::AlignBottom
                               ? rect.bottom() - metrics.descent()
                               : rect.center().y() + (metrics.ascent() - metrics.descent()) / 2;
    walk(
        digits, metrics, text,
        [&](const QString& part, qreal taken) {
            painter.drawText(QPointF(x, baseline), part);
            x += taken;
        },
        [&](const QString& digit, qreal own) {
            painter.drawText(QPointF(x + (digits.cell - own) / 2, baseline), digit);
            x += digits.cell;
        });
}

} // namespace ostrivane::Numbers
