#pragma once

#include "app/widgets/TableColumn.hpp"

#include <QAbstractTableModel>
#include <QPixmap>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ostrivane {

/// What a `TableView` and its delegate ask of a model; see `RowsModel`. Rows lie in slots that they keep for life; what
/// changes from one assignment to the next is the order of the slots.
class RowsModelBase : public QAbstractTableModel {
public:
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
    const ColumnFacts& column(int index) const { return facts[static_cast<std::size_t>(index)]; }

    /// What a delegate draws of a cell, made when it is asked for.
    struct Cell {
        QString text;
        QString note;
        QString suffix;
        std::optional<double> heat;
        std::optional<double> bar;
        Tone tone = Tone::text;
        bool isBold = false;

        friend bool operator==(const Cell&, const Cell&) = default;
    };
    Cell cell(int row, int column) const;
    QPixmap icon(int row, int column, int pixels, qreal ratio) const;

    /// A row that has left the data and stays in view only because the order is held.
    bool isGone(int row) const { return gone.contains(slotAt(row)); }

    int sortColumn() const { return sortedBy; }
    Qt::SortOrder sortOrder() const { return direction; }

    /// While held, rows keep their order: figures go on changing, gone rows stay (`isGone`), new ones join at the end.
    void setOrderHeld(bool held);
    bool isOrderHeld() const { return isHeld; }

    /// Sorts at once, held or not. Column -1: rows stand as they were assigned. Signalled as a change of the heads.
    void sort(int column, Qt::SortOrder order) override;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

protected:
    RowsModelBase(std::vector<ColumnFacts> columns, QObject* parent);

    virtual Cell cellOf(std::size_t slot, int column) const = 0;
    virtual QPixmap iconOf(std::size_t slot, int column, int pixels, qreal ratio) const = 0;
    virtual QString toolTipOf(std::size_t slot, int column) const = 0;
    virtual SortKey sortKeyOf(std::size_t slot, int column) const = 0;
    /// The order of identities, which decides between equal rows.
    virtual bool comesBefore(std::size_t slot, std::size_t other) const = 0;
    /// The slot is free for another row.
    virtual void forget(std::size_t slot) = 0;

    // An assignment: `begin`, then `place` for each of its rows in turn, then `finish`.
    void begin();
    /// @param slot  where the row lies already; absent: it is new
    /// @returns the row's slot; absent for a row that was placed in this assignment before
    std::optional<std::size_t> place(std::optional<std::size_t> slot);
    /// Signals what changed. What gone rows point into must live until it returns.
    /// @param settles  the order is put right although it is held
    void finish(bool settles = false);

    std::size_t slotAt(int row) const { return order[static_cast<std::size_t>(row)]; }
    int rowAt(std::size_t slot) const { return slots[slot].row; }

private:
    struct Slot {
        int row = -1;             ///< where it stands; negative while it does not
        std::uint64_t round = 0;  ///< the assignment that placed it last
        std::size_t position = 0; ///< among the rows of that assignment
        std::string text;         ///< the last one that it was sorted by
        std::string collation;    ///< and what that is compared by
    };
    /// What a gone row showed last; its record is no more.
    struct Remains {
        std::vector<Cell> cells;
        std::vector<QPixmap> icons;
    };
    struct Key;

    QString sortWords() const;
    void settle();
    void append(const std::vector<std::size_t>& joining);
    void removeFrom(std::size_t row);
    void keepRemains(std::size_t slot);
    void dropSurplus();
    void release(std::size_t slot);
    void reorder(std::vector<std::size_t> wanted);
    std::vector<Key> keys();
    std::string_view collated(Slot& slot, std::string_view text) const;

    const std::vector<ColumnFacts> facts;
    std::vector<Slot> slots;
    std::vector<std::size_t> freeSlots;
    std::vector<std::size_t> order; ///< slots by row
    std::vector<std::size_t> fresh; ///< slots that joined with this assignment
    std::unordered_map<std::size_t, Remains> gone;
    std::uint64_t round = 0;
    std::size_t placed = 0;
    int sortedBy = -1;
    Qt::SortOrder direction = Qt::AscendingOrder;
    bool isHeld = false;
};

/// Texts in the order of their keys are in the order in which a person looks for them: without regard to case and
/// accents, "item 9" ahead of "item 10".
std::string collationKey(std::string_view text);

/// A table over records that are matched by identity from one assignment to the next, so that selection, scroll
/// position and order outlive a tick. `Row` is cheap to copy (a pointer into the snapshot that `Keep` holds alive, and
/// what goes with it); `ID` is hashable and ordered. Of two rows with one identity the first counts. Never reset while
/// shown: changed cells are signalled, and changes of order as one change of layout.
template <class Row, class ID>
class RowsModel final : public RowsModelBase {
public:
    RowsModel(std::vector<TableColumn<Row>> columns, std::function<ID(const Row&)> id, QObject* parent = nullptr)
        : RowsModelBase(factsOf(columns), parent), told(std::move(columns)), identify(std::move(id)) {}

    /// Takes the rows of the present, in any order.
    /// @param keep  what the rows point into; held until the next assignment
    void assign(std::vector<Row> rows, std::shared_ptr<const void> keep) {
        present = std::move(rows);
        placeAll(false);
        kept = std::move(keep);
    }

    /// Only rows that pass are shown; empty: all. The order is put right, held or not.
    void setFilter(std::function<bool(const Row&)> filter) {
        passes = std::move(filter);
        placeAll(true);
    }

    /// Null for a row that is gone.
    const Row* row(int index) const {
        return index < 0 || index >= rowCount() || isGone(index) ? nullptr : &*records[slotAt(index)].row;
    }
    std::optional<ID> id(int index) const {
        return index < 0 || index >= rowCount() ? std::nullopt : std::optional(*records[slotAt(index)].id);
    }
    /// Where the row with that identity stands now.
    std::optional<int> indexOf(const ID& id) const {
        const auto found = slotOf.find(id);
        return found == slotOf.end() ? std::nullopt : std::optional(rowAt(found->second));
    }

private:
    struct Record {
        std::optional<Row> row;
        const ID* id = nullptr; ///< the key in `slotOf`
    };

    static std::vector<ColumnFacts> factsOf(const std::vector<TableColumn<Row>>& columns) {
        std::vector<ColumnFacts> facts;
        facts.reserve(columns.size());
        for (const TableColumn<Row>& column : columns)
            facts.push_back({std::string(column.id), column.title, column.isNumeric, column.width, column.isHideable,
                             static_cast<bool>(column.sortKey), column.sortsDescendingFirst, column.isStrong,
                             static_cast<bool>(column.icon), static_cast<bool>(column.bar),
                             static_cast<bool>(column.suffix), column.barSeries, column.elide});
        return facts;
    }

    void placeAll(bool settles) {
        begin();
        for (const Row& row : present)
            if (!passes || passes(row))
                placeOne(row);
        finish(settles);
    }

    void placeOne(const Row& row) {
        const auto [entry, isNew] = slotOf.try_emplace(identify(row), 0);
        const auto slot = place(isNew ? std::nullopt : std::optional(entry->second));
        if (!slot)
            return;
        if (isNew) {
            entry->second = *slot;
            records.resize(std::max(records.size(), *slot + 1));
            records[*slot].id = &entry->first;
        }
        records[*slot].row = row;
    }

    const TableColumn<Row>& toldOf(int column) const { return told[static_cast<std::size_t>(column)]; }

    Cell cellOf(std::size_t slot, int column) const override {
        const TableColumn<Row>& about = toldOf(column);
        const Row& row = *records[slot].row;
        Cell cell;
        if (about.text)
            cell.text = about.text(row);
        if (about.note)
            cell.note = about.note(row);
        if (about.suffix)
            cell.suffix = about.suffix(row);
        if (about.heat)
            cell.heat = about.heat(row);
        if (about.bar)
            cell.bar = about.bar(row);
        if (about.tone)
            cell.tone = about.tone(row);
        cell.isBold = about.isBold && about.isBold(row);
        return cell;
    }
    QPixmap iconOf(std::size_t slot, int column, int pixels, qreal ratio) const override {
        const TableColumn<Row>& about = toldOf(column);
        return about.icon ? about.icon(*records[slot].row, pixels, ratio) : QPixmap();
    }
    QString toolTipOf(std::size_t slot, int column) const override {
        const TableColumn<Row>& about = toldOf(column);
        return about.toolTip ? about.toolTip(*records[slot].row) : QString();
    }
    SortKey sortKeyOf(std::size_t slot, int column) const override {
        return toldOf(column).sortKey(*records[slot].row);
    }
    bool comesBefore(std::size_t slot, std::size_t other) const override {
        return *records[slot].id < *records[other].id;
    }
    void forget(std::size_t slot) override {
        records[slot].row.reset();
        slotOf.erase(slotOf.find(*records[slot].id));
    }

    const std::vector<TableColumn<Row>> told;
    const std::function<ID(const Row&)> identify;
    std::function<bool(const Row&)> passes;
    std::vector<Row> present;
    std::shared_ptr<const void> kept;
    std::unordered_map<ID, std::size_t> slotOf;
    std::vector<Record> records; ///< by slot
};

} // namespace ostrivane
