#include "app/widgets/Tag.hpp"

#include "app/widgets/Paint.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>

namespace ostrivane {

namespace {

constexpr double tagHeight = 18;
constexpr double tagPadding = 6;

} // namespace

Tag::Tag(const QString& label, QWidget* parent) : QWidget(parent), word(label) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    if (word.isEmpty())
        hide();
}

void Tag::setWord(const QString& label) {
    if (label == word)
        return;
    word = label;
    setVisible(!word.isEmpty());
    updateGeometry();
    update();
}

QSize Tag::sizeHint() const {
    return {Paint::textWidth(Type::font(TypeRole::caption), word) + 2 * Type::px(tagPadding), Type::px(tagHeight)};
}

void Tag::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Theme& theme = Theme::current();
    Paint::sheet(painter, rect(), Type::px(4), theme.unknown.ground);
    painter.setPen(theme.text2);
    Paint::line(painter, rect().adjusted(Type::px(tagPadding), 0, -Type::px(tagPadding), 0),
                Type::font(TypeRole::caption), word, Qt::AlignCenter);
}

} // namespace ostrivane
