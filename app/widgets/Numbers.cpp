#include "app/widgets/Numbers.hpp"

#include "app/widgets/Paint.hpp"
#include "app/widgets/ShapedText.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Theme.hpp"
#include "core/model/Formatters.hpp"

#include <QFontMetricsF>
#include <QHash>

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

bool isPlain(const Digits& digits, const QString& text) {
    return digits.areEven || text.isRightToLeft() || std::none_of(text.begin(), text.end(), isDigit);
}

/// Stretches without digits as the font has them, and each digit in the middle of a cell.
ShapedText evened(const Digits& digits, const QFont& font, const QString& text) {
    ShapedText whole;
    const auto append = [&](const QString& part, qreal shift) {
        for (QGlyphRun run : ShapedText::of(font, part).runs) {
            QList<QPointF> positions = run.positions();
            for (QPointF& position : positions)
                position.rx() += whole.width + shift;
            run.setPositions(positions);
            whole.runs.append(run);
        }
    };
    for (qsizetype at = 0; at < text.size();) {
        if (isDigit(text[at])) {
            append(text.mid(at, 1),
                   (digits.cell - digits.widths[static_cast<std::size_t>(text[at].unicode() - u'0')]) / 2);
            whole.width += digits.cell;
            ++at;
            continue;
        }
        const auto end = std::find_if(text.begin() + at, text.end(), isDigit) - text.begin();
        const QString part = text.mid(at, end - at);
        append(part, 0);
        whole.width += ShapedText::of(font, part).width;
        at = end;
    }
    return whole;
}

ShapedText shaped(const QFont& font, const QString& text) {
    const Digits& digits = digitsOf(font);
    return isPlain(digits, text) ? ShapedText::of(font, text) : evened(digits, font, text);
}

} // namespace

qreal width(const QFont& font, const QString& text) {
    return shaped(font, text).width;
}

void draw(QPainter& painter, const QRectF& rect, const QFont& font, Qt::Alignment alignment, const QString& text) {
    Paint::draw(painter, rect, QFontMetricsF(font), alignment, shaped(font, text));
}

Tone toneOf(const QString& figure, Tone usual) {
    const bool isAbsent = figure == text(Formatters::dash) || figure == text(Formatters::unavailable);
    return isAbsent && usual == Tone::text ? Tone::text2 : usual;
}

} // namespace ostrivane::Numbers
