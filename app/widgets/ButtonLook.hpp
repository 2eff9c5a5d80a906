#pragma once

#include "app/widgets/Buttons.hpp"

#include <QColor>
#include <QRect>

class QPainter;

namespace ostrivane {

/// The ground of a push button, wherever one is painted.
namespace ButtonLook {

struct State {
    bool isEnabled = true;
    bool isHovered = false;
    bool isPressed = false;
};

/// Paints ground and edge. Gives the colour of the text on it.
QColor drawGround(QPainter& painter, const QRect& rect, ButtonKind kind, State state);

/// The state of a button that is part of a window.
State stateOf(const QAbstractButton& button);

/// A small arrow that points down, as of a menu.
void drawChevron(QPainter& painter, const QRectF& rect, const QColor& ink);

} // namespace ButtonLook

} // namespace ostrivane
