#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"

#include <QString>
#include <QWidget>

#include <string>
#include <vector>

namespace ostrivane {

/// A finding: a tinted icon, a line, a line of evidence, a time where it has one.
struct EvidenceRow {
    std::string id; ///< the same for the same finding
    std::string icon;
    Condition condition = Condition::info;
    QString title;
    QString evidence;
    QString time{};
    bool leadsSomewhere = false; ///< shows a chevron, and can be activated

    friend bool operator==(const EvidenceRow&, const EvidenceRow&) = default;
};

/// Findings one below the other, 47 high each, divided by lines. Up and Down move, Enter activates.
class EvidenceList final : public QWidget, public AccessibleItems {
    Q_OBJECT
public:
    explicit EvidenceList(const QString& name, QWidget* parent = nullptr);
    void set(std::vector<EvidenceRow> rows);
    const std::vector<EvidenceRow>& rows() const { return shown; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    QAccessible::Role accessibleRole() const override { return QAccessible::List; }
    QAccessible::Role accessibleItemRole() const override { return QAccessible::ListItem; }
    int accessibleItemCount() const override { return rowCount(); }
    QString accessibleItemText(int index) const override;
    QRect accessibleItemRect(int index) const override;
    int accessibleCurrentItem() const override { return rowCount() > 0 ? current : -1; }
    void activateItem(int index) override;

Q_SIGNALS:
    void activated(int row);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    int rowCount() const { return static_cast<int>(shown.size()); }
    int rowAt(const QPoint& point) const;
    void moveTo(int row);

    std::vector<EvidenceRow> shown;
    int hovered = -1;
    int pressed = -1;
    int current = 0;
};

} // namespace ostrivane
