#pragma once

#include "app/widgets/TableColumn.hpp"

#include <QAbstractTableModel>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// What a `TableView` and its delegate ask of a model; see `RowsModel`.
class RowsModelBase : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    struct ColumnFacts {
        std::string id;
        QString title;
        bool isNumeric = false;
        int width = 0;
        bool isHideable = true;
        bool isSortable = false;
        bool sortsDescendingFirst = false;
        bool isStrong = false;
        bool hasIcon = false;
        bool hasBar = false;
        bool hasSuffix = false;
        Series barSeries = Series::s1;
        Qt::TextElideMode elide = Qt::ElideRight;
    };
    virtual const ColumnFacts& column(int index) const = 0;

    /// What a delegate draws of a cell, made when it is asked for.
    struct Cell {
        QString text;
        QString note;
        QString suffix;
        std::optional<double> heat;
        std::optional<double> bar;
        Tone tone = Tone::text;
        bool isBold = false;
    };
    virtual Cell cell(int row, int column) const = 0;
    virtual QPixmap icon(int row, int column, int pixels, qreal ratio) const = 0;

    /// A row that has left the data and stays in view only because the order is held.
    virtual bool isGone(int row) const = 0;

    virtual int sortColumn() const = 0;
    virtual Qt::SortOrder sortOrder() const = 0;

    /// While held, rows keep their order: figures go on changing, gone rows stay (`isGone`), new ones join at the end.
    virtual void setOrderHeld(bool held) = 0;
    virtual bool isOrderHeld() const = 0;
};

/// A table over records that are matched by identity from one assignment to the next, so that selection, scroll
/// position and order outlive a tick. `Row` is cheap to copy (a pointer into the snapshot that `Keep` holds alive, and
/// what goes with it); `ID` is hashable. Never reset while shown: changed cells are signalled, and changes of order as
/// one change of layout.
template <class Row, class ID>
class RowsModel final : public RowsModelBase {
public:
    RowsModel(std::vector<TableColumn<Row>> columns, std::function<ID(const Row&)> id, QObject* parent = nullptr);

    /// Takes the rows of the present, in any order.
    /// @param keep  what the rows point into; held until the next assignment
    void assign(std::vector<Row> rows, std::shared_ptr<const void> keep);

    /// Only rows that pass are shown; empty: all.
    void setFilter(std::function<bool(const Row&)> passes);

    void sort(int column, Qt::SortOrder order) override;

    const Row* row(int index) const;
    std::optional<ID> id(int index) const;
    /// Where the row with that identity stands now.
    std::optional<int> indexOf(const ID& id) const;

    // … the overrides of RowsModelBase and QAbstractTableModel
};

} // namespace ostrivane
