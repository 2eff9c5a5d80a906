#pragma once

#include "app/widgets/Accessibility.hpp"

#include <QStringList>
#include <QWidget>

namespace ostrivane {

/// One of a few choices, all in view. Left and Right step.
class SegmentedControl final : public QWidget, public AccessibleItems {
    Q_OBJECT
public:
    SegmentedControl(const QString& name, const QStringList& choices, QWidget* parent = nullptr);
    int index() const { return chosen; }
    const QStringList& choices() const { return titles; }
    void setIndex(int index); ///< signals nothing
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    QAccessible::Role accessibleRole() const override { return QAccessible::Grouping; }
    QString accessibleSentence() const override;
    QAccessible::Role accessibleItemRole() const override { return QAccessible::RadioButton; }
    int accessibleItemCount() const override { return static_cast<int>(titles.size()); }
    QString accessibleItemText(int index) const override { return titles.value(index); }
    QRect accessibleItemRect(int index) const override { return segment(index); }
    int accessibleCurrentItem() const override { return chosen; }
    void activateItem(int index) override { choose(index); }

Q_SIGNALS:
    /// The user chose another one.
    void indexChosen(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRect segment(int index) const;
    int segmentAt(const QPoint& point) const;
    void choose(int index);

    QStringList titles;
    int chosen = 0;
    int hovered = -1;
};

} // namespace ostrivane
