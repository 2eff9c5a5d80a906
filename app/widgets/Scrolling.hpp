#pragma once

class QScrollArea;
class QWidget;

namespace ostrivane {

/// An area in which `content` scrolls up and down, as wide as there is room. It has no ground of its own and takes no
/// part in the order of the focus.
QScrollArea* scrolling(QWidget* content, QWidget* parent);

} // namespace ostrivane
