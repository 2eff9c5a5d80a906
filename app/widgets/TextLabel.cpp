#include "app/widgets/TextLabel.hpp"

#include "app/widgets/Numbers.hpp"
#include "app/widgets/Paint.hpp"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace ostrivane {

namespace {

constexpr double comfortable = 360;        // a wrapped text asks for no more width than this
constexpr qsizetype longestWrapped = 4000; // characters, far beyond what a page can show

/// Breaks a text into lines and calls `each` with its layout's line; gives their count.
int breakLines(const QFont& font, const QString& text, int width, const std::function<void(QTextLine, int)>& each) {
    QString plain = text.left(longestWrapped);
    plain.replace(u'\n', QChar::LineSeparator);
    QTextLayout layout(plain, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(plain.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    layout.setTextOption(option);
    layout.beginLayout();
    std::vector<QTextLine> lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines.push_back(line);
    }
    layout.endLayout();
    int count = 0;
    for (const QTextLine& line : lines) {
        if (each)
            each(line, count);
        ++count;
    }
    return count;
}

} // namespace

TextLabel::TextLabel(TypeRole role, Tone tone, QWidget* parent) : QWidget(parent), lettering(role), ink(tone) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void TextLabel::setText(const QString& text) {
    if (text == shown)
        return;
    const int before = naturalWidth();
    shown = text;
    if (wraps || naturalWidth() != before)
        updateGeometry();
    updateToolTip();
    update();
}

void TextLabel::setTone(Tone tone) {
    if (tone == ink)
        return;
    ink = tone;
    update();
}

void TextLabel::setElideMode(Qt::TextElideMode mode) {
    if (mode == elide)
        return;
    elide = mode;
    updateGeometry();
    updateToolTip();
    update();
}

void TextLabel::setWraps(bool isWrapped) {
    if (isWrapped == wraps)
        return;
    wraps = isWrapped;
    QSizePolicy policy(QSizePolicy::Preferred, wraps ? QSizePolicy::Preferred : QSizePolicy::Fixed);
    policy.setHeightForWidth(wraps);
    setSizePolicy(policy);
    updateToolTip();
    update();
}

void TextLabel::setAlignment(Qt::Alignment alignment) {
    if (alignment == place)
        return;
    place = alignment;
    update();
}

void TextLabel::setReserved(const QString& widest) {
    if (widest == reserved)
        return;
    reserved = widest;
    updateGeometry();
}

void TextLabel::setTabular(bool isTabular) {
    if (isTabular == tabular)
        return;
    tabular = isTabular;
    updateGeometry();
    update();
}

QSize TextLabel::sizeHint() const {
    const int wide = naturalWidth();
    if (!wraps)
        return {wide, Type::lineHeight(lettering)};
    const int width = std::min(wide, Type::px(comfortable));
    return {width, heightForWidth(width)};
}

QSize TextLabel::minimumSizeHint() const {
    const int wide = naturalWidth();
    const int least = elide == Qt::ElideNone && !wraps ? wide : std::min(wide, 3 * Type::lineHeight(lettering));
    return {least, Type::lineHeight(lettering)};
}

int TextLabel::heightForWidth(int width) const {
    const int lines = wraps && width > 0 ? breakLines(Type::font(lettering), shown, width, {}) : 1;
    return std::max(1, lines) * Type::lineHeight(lettering);
}

void TextLabel::paintEvent(QPaintEvent*) {
    if (shown.isEmpty())
        return;
    QPainter painter(this);
    const QFont font = Type::font(lettering);
    painter.setPen(isEnabled() ? Theme::current().colour(ink) : Theme::current().text3);
    if (!wraps) {
        if (tabular && textWidth(shown) <= width())
            Numbers::draw(painter, rect(), font, place, shown);
        else
            Paint::line(painter, rect(), font, shown, place, elide);
        return;
    }
    const int line = Type::lineHeight(lettering);
    const int height = heightForWidth(width());
    const int top = place & Qt::AlignTop      ? 0
                    : place & Qt::AlignBottom ? rect().height() - height
                                              : (rect().height() - height) / 2;
    const Qt::Alignment side = QStyle::visualAlignment(layoutDirection(), place);
    breakLines(font, shown, width(), [&](const QTextLine& laid, int index) {
        const qreal slack = width() - laid.naturalTextWidth();
        const qreal x = side & Qt::AlignRight ? slack : side & Qt::AlignHCenter ? slack / 2 : 0;
        laid.draw(&painter, QPointF(x - laid.naturalTextRect().left(),
                                    top + index * line + (line - laid.height()) / 2 - laid.y()));
    });
}

void TextLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange)
        updateGeometry();
    QWidget::changeEvent(event);
}

void TextLabel::resizeEvent(QResizeEvent* event) {
    updateToolTip();
    QWidget::resizeEvent(event);
}

int TextLabel::textWidth(const QString& text) const {
    const QFont font = Type::font(lettering);
    return tabular ? static_cast<int>(std::ceil(Numbers::width(font, text))) : Paint::textWidth(font, text);
}

int TextLabel::naturalWidth() const {
    return std::max(textWidth(shown), reserved.isEmpty() ? 0 : textWidth(reserved));
}

/// A tooltip of the whole text where it is cut, and none where it is not; another's tooltip is left alone.
void TextLabel::updateToolTip() {
    const bool isCut = !wraps && !shown.isEmpty() && testAttribute(Qt::WA_Resized) && textWidth(shown) > width();
    const QString wanted = isCut ? Paint::toolTip(shown) : QString();
    if (toolTip() == wanted || (toolTip() != ownToolTip && !toolTip().isEmpty()))
        return;
    ownToolTip = wanted;
    setToolTip(wanted);
}

} // namespace ostrivane
