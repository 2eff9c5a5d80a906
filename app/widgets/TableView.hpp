#pragma once

#include <QTableView>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane {

class KeyValueStore;
class RowsModelBase;

/// A table in the program's look: sort by the heads, hide and resize columns by their menu (kept under the table's id),
/// keep the order while the pointer is inside, a menu of it is open, or a key was pressed in it within five seconds.
class TableView final : public QTableView {
    Q_OBJECT
public:
    /// @param id  under which widths and hidden columns are kept, as "table.ID"
    /// @param store  null: nothing is kept
    TableView(std::string id, const QString& name, KeyValueStore* store, QWidget* parent = nullptr);
    ~TableView() override;

    void setRows(RowsModelBase* model);
    RowsModelBase* rows() const;

    void setDense(bool dense); ///< rows of 25 in place of 28
    /// As tall as its head and that many rows, without scrolling: for a table within a card.
    void setVisibleRows(int count);
    /// The row that is selected; -1 without.
    int selectedRow() const;
    /// And brings it into view, where it stays as the table gets lower. -1: none.
    void selectRow(int row);
    /// Columns that drop out where the window is narrow, whatever the user chose.
    void setNarrowHides(std::vector<std::string> columnIDs);
    void setNarrow(bool narrow);

    /// Keeps the order until a dialog about this table is closed. For menus that answer `menuWanted` it does so itself.
    void holdWhileOpen(QWidget* opened);
    bool isOrderHeld() const;

    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles = {}) override;

Q_SIGNALS:
    void selectionMoved(int row);            ///< -1 when nothing is selected any more
    void rowActivated(int row);              ///< Enter or a double click
    void menuWanted(int row, QPoint global); ///< the context menu of a row
    void orderHeldChanged(bool held);

protected:
    void rowsInserted(const QModelIndex& parent, int start, int end) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void sortBy(int column);
    void applyColumns();
    void sectionDragged(int column, int before, int now);
    void showHeadMenu(QPoint global);
    std::pair<int, int> rowsInView() const;
    void hover(int row);
    void updateRow(int row);
    void remember();

    struct Parts;
    std::unique_ptr<Parts> parts;
};

} // namespace ostrivane
