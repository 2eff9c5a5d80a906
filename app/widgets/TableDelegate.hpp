#pragma once

#include "app/widgets/RowsModel.hpp"

#include <QFont>
#include <QStyledItemDelegate>

#include <cstdint>
#include <unordered_map>

namespace ostrivane {

/// Paints the cells of every table: ground, heat, bar, icon, text or figure. Remembers what it painted, so that a cell
/// that still shows the same is left alone.
class TableDelegate final : public QStyledItemDelegate {
public:
    explicit TableDelegate(QObject* parent);

    /// What is left of a cell within its margins.
    static QRect inner(const QRect& cell, bool isFirst, bool isLast, Qt::LayoutDirection direction);

    /// The outermost visible columns.
    void setEdges(int first, int last);
    void setHoveredRow(int row) { hovered = row; }
    int hoveredRow() const { return hovered; }

    /// Whether a cell has to be painted: it shows something else by now, or it is not known to have been painted.
    bool isOutdated(const RowsModelBase& rows, int row, int column) const;
    /// Rows stand elsewhere: nothing that was painted is where it was.
    void forgetPainted() { painted.clear(); }
    /// All but these rows are out of view, and are painted anew when they come into it.
    void forgetPaintedBeside(int first, int last);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

private:
    struct Letterings {
        Letterings();
        double base;
        QFont plain;
        QFont strong;
        QFont bold;
        QFont note;
        qreal suffix; ///< width of its slot

        const QFont& of(const RowsModelBase::Cell& cell, const RowsModelBase::ColumnFacts& facts) const {
            return cell.isBold ? bold : facts.isStrong ? strong : plain;
        }
    };
    struct Place;

    const Letterings& letterings() const;
    void drawGround(const Place& place) const;
    void drawFigure(const Place& place, QRect rect) const;
    void drawWords(const Place& place, QRect rect) const;

    mutable std::unordered_map<std::uint64_t, RowsModelBase::Cell> painted;
    mutable std::unique_ptr<Letterings> made;
    int firstColumn = 0;
    int lastColumn = 0;
    int hovered = -1;
};

} // namespace ostrivane
