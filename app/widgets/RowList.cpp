#include "app/widgets/RowList.hpp"

#include "app/widgets/Style.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr qint64 heldAfterKey = 5000; // milliseconds

/// A list whose value is the row where the keyboard is.
class RowListAccess final : public QAccessibleWidget {
public:
    explicit RowListAccess(RowList* list) : QAccessibleWidget(list, QAccessible::List) {}
    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value)
            return static_cast<const RowList*>(widget())->currentText();
        return QAccessibleWidget::text(kind);
    }
};

QAccessibleInterface* rowListAccess(const QString&, QObject* object) {
    auto* list = qobject_cast<RowList*>(object);
    return list ? new RowListAccess(list) : nullptr;
}

} // namespace

RowList::RowList(const QString& name, QWidget* parent) : QWidget(parent) {
    [[maybe_unused]] static const bool installed = (QAccessible::installFactory(rowListAccess), true);
    setAccessibleName(name);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
}

bool RowList::isHeld() const {
    return underMouse() || (hasFocus() && sinceKey.isValid() && sinceKey.elapsed() < heldAfterKey);
}

QString RowList::currentText() const {
    const int count = rowCount();
    return count > 0 ? rowText(std::clamp(current, 0, count - 1)) : QString();
}

int RowList::textMargin() const {
    return Type::px(14);
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
    setCursor(row >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void RowList::setCurrent(int row) {
    row = std::clamp(row, 0, std::max(rowCount() - 1, 0));
    if (row == current)
        return;
    updateRow(current);
    current = row;
    updateRow(current);
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent moved(this, currentText());
        QAccessible::updateAccessibility(&moved);
    }
}

void RowList::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const Theme& theme = Theme::current();
    paintRest(painter);
    for (int row = 0; row < rowCount(); ++row) {
        const QRect rect = rowRect(row);
        if (!event->rect().intersects(rect))
            continue;
        if (row == hovered)
            painter.fillRect(rect, theme.hover);
        painter.fillRect(rect.left(), rect.top(), rect.width(), 1, theme.separator);
        paintRow(painter, rect.adjusted(0, 1, 0, 0), row);
    }
    if (rowCount() > 0 && Style::showsFocus(*this)) {
        const QRect rect = rowRect(std::clamp(current, 0, rowCount() - 1));
        Style::drawFocusRing(painter, QRectF(rect).adjusted(3, 3, -3, -3), Type::px(3));
    }
}

void RowList::mouseMoveEvent(QMouseEvent* event) {
    setHovered(rowAt(event->position().toPoint()));
}

void RowList::mousePressEvent(QMouseEvent* event) {
    pressed = event->button() == Qt::LeftButton ? rowAt(event->position().toPoint()) : -1;
}

void RowList::mouseReleaseEvent(QMouseEvent* event) {
    const int row = rowAt(event->position().toPoint());
    const bool isMeant = event->button() == Qt::LeftButton && row >= 0 && row == pressed;
    pressed = -1;
    if (!isMeant)
        return;
    setCurrent(row);
    Q_EMIT activated(row);
}

void RowList::leaveEvent(QEvent*) {
    setHovered(-1);
}

void RowList::keyPressEvent(QKeyEvent* event) {
    sinceKey.start();
    switch (event->key()) {
    case Qt::Key_Up:
        return setCurrent(current - 1);
    case Qt::Key_Down:
        return setCurrent(current + 1);
    case Qt::Key_Home:
        return setCurrent(0);
    case Qt::Key_End:
        return setCurrent(rowCount() - 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (rowCount() > 0)
            Q_EMIT activated(std::clamp(current, 0, rowCount() - 1));
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace ostrivane
