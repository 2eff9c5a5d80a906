#include "app/widgets/Badge.hpp"

#include "app/widgets/Paint.hpp"
#include "app/widgets/StatusGlyph.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QStyle>

namespace ostrivane {

namespace {

constexpr double badgeHeight = 20;
constexpr double badgePadding = 6;
constexpr double glyphSize = 11;
constexpr double glyphGap = 4;

} // namespace

Badge::Badge(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Badge::set(Condition shown, const QString& label) {
    if (shown == condition && label == word)
        return;
    const bool resized = label != word;
    condition = shown;
    word = label;
    setToolTip(glyphOnly ? Paint::toolTip(word) : QString());
    if (resized)
        updateGeometry();
    update();
}

void Badge::setGlyphOnly(bool isGlyphOnly) {
    if (isGlyphOnly == glyphOnly)
        return;
    glyphOnly = isGlyphOnly;
    setToolTip(glyphOnly ? Paint::toolTip(word) : QString());
    updateGeometry();
    update();
}

QSize Badge::sizeHint() const {
    const int height = Type::px(badgeHeight);
    if (glyphOnly)
        return {height, height};
    const int lettering = Paint::textWidth(Type::font(TypeRole::captionStrong), word);
    return {Type::px(badgePadding + glyphSize + glyphGap + badgePadding + 2) + lettering, height};
}

void Badge::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const StatusColours colours = Theme::current().colours(condition);
    const int height = Type::px(badgeHeight);
    const QRect pill(0, (rect().height() - height) / 2, width(), height);
    Paint::sheet(painter, pill, height / 2.0, colours.ground);
    const int glyph = Type::px(glyphSize);
    const int inset = glyphOnly ? (width() - glyph) / 2 : Type::px(badgePadding);
    const QRect sign(inset, pill.top() + (height - glyph) / 2, glyph, glyph);
    drawStatusGlyph(painter, QStyle::visualRect(layoutDirection(), rect(), sign), condition);
    if (glyphOnly)
        return;
    const int start = inset + glyph + Type::px(glyphGap);
    const QRect label(start, pill.top(), width() - start - Type::px(badgePadding), height);
    painter.setPen(colours.text);
    Paint::line(painter, QStyle::visualRect(layoutDirection(), rect(), label), Type::font(TypeRole::captionStrong),
                word);
}

} // namespace ostrivane
