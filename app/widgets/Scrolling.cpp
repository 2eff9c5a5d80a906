#include "app/widgets/Scrolling.hpp"

#include <QScrollArea>

namespace ostrivane {

QScrollArea* scrolling(QWidget* content, QWidget* parent) {
    auto* area = new QScrollArea(parent);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidget(content); // gives it a ground
    content->setAutoFillBackground(false);
    area->viewport()->setAutoFillBackground(false);
    return area;
}

} // namespace ostrivane
