#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/OrderHold.hpp"

#include <QWidget>

class QPainter;

namespace ostrivane {

/// A few rows one below the other, painted, divided by lines. A click, Enter or Space activates a row that leads
/// somewhere; Up, Down, Home and End move. What a row is, the kinds of it say.
class RowList : public QWidget, public AccessibleItems {
    Q_OBJECT
public:
    explicit RowList(const QString& name, QWidget* parent = nullptr);

    /// Whether rows should keep their places, because somebody points at them.
    bool isHeld() const { return hold.isHeld(); }

    QAccessible::Role accessibleRole() const override { return QAccessible::List; }
    QAccessible::Role accessibleItemRole() const override { return QAccessible::ListItem; }
    int accessibleItemCount() const override { return rowCount(); }
    QString accessibleItemText(int index) const override { return rowText(index); }
    QRect accessibleItemRect(int index) const override { return rowRect(index); }
    int accessibleCurrentItem() const override;
    void activateItem(int index) override;

Q_SIGNALS:
    void activated(int row);

protected:
    virtual int rowCount() const = 0;
    virtual QRect rowRect(int row) const = 0;
    virtual bool leads(int /*row*/) const { return true; }
    /// @param rect  without the line above the row
    virtual void paintRow(QPainter& painter, const QRect& rect, int row) = 0;
    /// For assistive programs.
    virtual QString rowText(int row) const = 0;
    /// What stands beside the rows, such as heads of columns.
    virtual void paintRest(QPainter& /*painter*/) {}

    /// -1 beside the rows.
    int rowAt(const QPoint& point) const;
    /// Rows are others now, or stand elsewhere; that of the keyboard at `keyboardRow`.
    void rowsMoved(int keyboardRow);

    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showCursor();
    void updateRow(int row);
    void setHovered(int row);
    void moveTo(int row);

    OrderHold hold{this};
    int hovered = -1;
    int pressed = -1;
    int current = 0;
};

} // namespace ostrivane
