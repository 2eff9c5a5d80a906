#include "app/widgets/RowList.hpp"

#include "app/widgets/Style.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace ostrivane {

RowList::RowList(const QString& name, QWidget* parent) : QWidget(parent) {
    setAccessibleName(name);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
}

int RowList::accessibleCurrentItem() const {
    return std::min(current, rowCount() - 1); // rows may have become fewer
}

void RowList::activateItem(int index) {
    if (index >= 0 && index < rowCount() && leads(index))
        Q_EMIT activated(index);
}

int RowList::rowAt(const QPoint& point) const {
    for (int row = 0; row < rowCount(); ++row)
        if (rowRect(row).contains(point))
            return row;
    return -1;
}

void RowList::updateRow(int row) {
    if (row >= 0 && row < rowCount())
        update(rowRect(row));
}

void RowList::setHovered(int row) {
    if (row == hovered)
        return;
    updateRow(hovered);
    hovered = row;
    updateRow(hovered);
    showCursor();
}

/// A hand over what leads somewhere.
void RowList::showCursor() {
    const bool isOverLead = hovered >= 0 && hovered < rowCount() && leads(hovered);
    setCursor(isOverLead ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void RowList::rowsMoved(int keyboardRow) {
    current = std::max(keyboardRow, 0);
    showCursor();
    update();
}

void RowList::moveTo(int row) {
    row = std::clamp(row, 0, std::max(rowCount() - 1, 0));
    if (row == current)
        return;
    updateRow(current);
    current = row;
    updateRow(current);
    QAccessibleEvent moved(this, QAccessible::Focus);
    moved.setChild(current);
    QAccessible::updateAccessibility(&moved);
}

void RowList::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme& theme = Theme::current();
    const bool showsFocus = Style::showsFocus(*this);
    paintRest(painter);
    for (int row = 0; row < rowCount(); ++row) {
        const QRect rect = rowRect(row);
        if (!event->rect().intersects(rect))
            continue;
        painter.fillRect(rect.left(), rect.top(), rect.width(), 1, theme.separator);
        const QRect inside = rect.adjusted(0, 1, 0, 0);
        if (row == hovered && leads(row))
            painter.fillRect(inside, theme.hover);
        paintRow(painter, inside, row);
        if (showsFocus && row == accessibleCurrentItem())
            Style::drawFocusRing(painter, QRectF(inside).adjusted(3, 3, -3, -3), Type::px(4));
    }
}

void RowList::enterEvent(QEnterEvent* event) {
    hold.setPointerInside(true);
    QWidget::enterEvent(event);
}

void RowList::leaveEvent(QEvent* event) {
    hold.setPointerInside(false);
    setHovered(-1);
    QWidget::leaveEvent(event);
}

void RowList::hideEvent(QHideEvent* event) {
    hold.release();
    QWidget::hideEvent(event);
}

void RowList::mouseMoveEvent(QMouseEvent* event) {
    setHovered(rowAt(event->position().toPoint()));
}

void RowList::mousePressEvent(QMouseEvent* event) {
    pressed = event->button() == Qt::LeftButton ? rowAt(event->position().toPoint()) : -1;
}

void RowList::mouseReleaseEvent(QMouseEvent* event) {
    const int row = rowAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || row < 0 || row != pressed)
        return;
    moveTo(row);
    activateItem(row);
}

void RowList::keyPressEvent(QKeyEvent* event) {
    hold.keyPressed();
    switch (event->key()) {
    case Qt::Key_Up:
        return moveTo(accessibleCurrentItem() - 1);
    case Qt::Key_Down:
        return moveTo(accessibleCurrentItem() + 1);
    case Qt::Key_Home:
        return moveTo(0);
    case Qt::Key_End:
        return moveTo(rowCount() - 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        return activateItem(accessibleCurrentItem());
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace ostrivane
