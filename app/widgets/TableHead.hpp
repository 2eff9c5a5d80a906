#pragma once

#include <QHeaderView>

namespace ostrivane {

class RowsModelBase;

/// The head of a table: titles, the sign of the order, lines to drag. With focus, Left and Right move from column to
/// column, Enter and Space sort.
class TableHead final : public QHeaderView {
    Q_OBJECT
public:
    explicit TableHead(QWidget* parent);

    /// Logical, by what is visible; -1 without columns.
    int firstVisible() const;
    int lastVisible() const;
    /// The visible column behind that one; -1 behind the last.
    int visibleAfter(int logical) const;
    QSize sizeHint() const override;

Q_SIGNALS:
    void sortWanted(int column);
    void menuWanted(QPoint global);

protected:
    void paintEvent(QPaintEvent* event) override;
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    const RowsModelBase* rows() const;
    void moveFocus(int step);
    QRect sectionRect(int logical) const;

    int focused = -1;
};

} // namespace ostrivane
