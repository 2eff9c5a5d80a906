#include "app/widgets/SymbolMark.hpp"

#include "app/widgets/Icons.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>

#include <utility>

namespace ostrivane {

namespace {

constexpr double iconSize = 16;

} // namespace

SymbolMark::SymbolMark(std::string name, Tone ink, QWidget* parent)
    : QWidget(parent), symbol(std::move(name)), tone(ink) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolMark::setSymbol(const std::string& name) {
    if (name == symbol)
        return;
    symbol = name;
    update();
}

QSize SymbolMark::sizeHint() const {
    return {Type::px(iconSize), Type::px(iconSize)};
}

void SymbolMark::paintEvent(QPaintEvent*) {
    QPainter(this).drawPixmap(
        0, 0, Icons::pixmap(symbol, Type::px(iconSize), Theme::current().colour(tone), devicePixelRatioF()));
}

} // namespace ostrivane
