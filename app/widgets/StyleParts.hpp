#pragma once

#include <QRect>
#include <QStyle>

class QPainter;
class QStyleOption;
class QStyleOptionComboBox;
class QStyleOptionMenuItem;
class QStyleOptionSlider;
class QStyleOptionSpinBox;

namespace ostrivane {

/// How the parts of the style are painted; `Style` decides which one is due.
namespace StyleParts {

// Menus and menu bars.
void drawMenuItem(QPainter& painter, const QStyleOptionMenuItem& option, bool showsMnemonics);
void drawMenuBarItem(QPainter& painter, const QStyleOptionMenuItem& option, bool showsMnemonics);
QSize menuItemSize(const QStyleOptionMenuItem& option, const QSize& contents);

// Fields, ticks and lists to choose from.
void drawField(QPainter& painter, const QStyleOption& option);
void drawTick(QPainter& painter, const QStyleOption& option);
void drawRadio(QPainter& painter, const QStyleOption& option);
void drawComboBox(QPainter& painter, const QStyleOptionComboBox& option);
void drawSpinBox(QPainter& painter, const QStyleOptionSpinBox& option);
QRect spinBoxPart(const QStyleOptionSpinBox& option, QStyle::SubControl part);
QRect comboBoxPart(const QStyleOptionComboBox& option, QStyle::SubControl part);

// Scroll bars.
void drawScrollBar(QPainter& painter, const QStyleOptionSlider& option);
QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part);

} // namespace StyleParts

} // namespace ostrivane
