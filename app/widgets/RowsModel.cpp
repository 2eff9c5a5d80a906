#include "app/widgets/RowsModel.hpp"

#include "app/widgets/Strings.hpp"
#include "app/widgets/Type.hpp"

#include <QGuiApplication>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace ostrivane {

namespace {

constexpr int iconSize = 16;
constexpr std::size_t mostGone = 500; // that stay in view: a pointer may rest on a list for hours
constexpr std::size_t collatedBytes = 256;

bool isDigit(char16_t letter) {
    return letter >= u'0' && letter <= u'9';
}

/// An accent that stands by itself once a letter is taken apart.
bool isAccent(char16_t letter) {
    return letter >= 0x300 && letter <= 0x36F;
}

} // namespace

std::string collationKey(std::string_view whole) {
    QString folded = text(whole.substr(0, collatedBytes));
    if (std::ranges::any_of(whole.substr(0, collatedBytes), [](char byte) { return (byte & 0x80) != 0; }))
        folded = folded.normalized(QString::NormalizationForm_KD);
    folded = folded.toCaseFolded();
    QString key;
    key.reserve(folded.size() + 8);
    for (qsizetype at = 0; at < folded.size();) {
        if (!isDigit(folded[at].unicode())) {
            if (!isAccent(folded[at].unicode()))
                key += folded[at];
            ++at;
            continue;
        }
        while (at < folded.size() && folded[at] == u'0')
            ++at;
        qsizetype end = at;
        while (end < folded.size() && isDigit(folded[end].unicode()))
            ++end;
        // Longer numbers are larger; the digit in front keeps numbers where digits stand among letters.
        key += u'0';
        key += QChar(static_cast<char16_t>(end - at + 1));
        key += QStringView(folded).mid(at, end - at);
        at = end;
    }
    return key.toStdString();
}

/// A row's place in the order, taken once per sort.
struct RowsModelBase::Key {
    std::size_t slot = 0;
    int kind = 0; ///< absent, number, text
    double number = 0;
    std::string_view text;

    /// Negative where this comes first.
    int compare(const Key& other) const {
        if (kind != other.kind)
            return kind - other.kind;
        if (kind == 1)
            return number < other.number ? -1 : number > other.number ? 1 : 0;
        return text.compare(other.text);
    }
};

RowsModelBase::RowsModelBase(std::vector<ColumnFacts> columns, QObject* owner)
    : QAbstractTableModel(owner), facts(std::move(columns)) {}

RowsModelBase::Cell RowsModelBase::cell(int row, int column) const {
    const auto remains = gone.find(slotAt(row));
    return remains == gone.end() ? cellOf(slotAt(row), column)
                                 : remains->second.cells[static_cast<std::size_t>(column)];
}

QPixmap RowsModelBase::icon(int row, int column, int pixels, qreal ratio) const {
    const auto remains = gone.find(slotAt(row));
    return remains == gone.end() ? iconOf(slotAt(row), column, pixels, ratio)
                                 : remains->second.icons[static_cast<std::size_t>(column)];
}

int RowsModelBase::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(order.size());
}

int RowsModelBase::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(facts.size());
}

QVariant RowsModelBase::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return cell(index.row(), index.column()).text;
    case Qt::AccessibleTextRole: {
        const Cell shown = cell(index.row(), index.column());
        QStringList parts{shown.text + shown.suffix};
        if (!shown.note.isEmpty())
            parts += shown.note;
        return parts.join(QStringLiteral(", "));
    }
    case Qt::ToolTipRole:
        return isGone(index.row()) ? QString() : toolTipOf(slotAt(index.row()), index.column());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((column(index.column()).isNumeric ? Qt::AlignTrailing : Qt::AlignLeading) |
                                   Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant RowsModelBase::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return column(section).title;
    case Qt::AccessibleTextRole:
        return column(section).title + (section == sortedBy ? sortWords() : QString());
    default:
        return {};
    }
}

/// What colour and sign of a head tell the eye.
QString RowsModelBase::sortWords() const {
    const bool isAscending = direction == Qt::AscendingOrder;
    if (column(sortedBy).isNumeric)
        return isAscending ? QStringLiteral(", sorted, lowest first") : QStringLiteral(", sorted, highest first");
    return isAscending ? QStringLiteral(", sorted, A to Z") : QStringLiteral(", sorted, Z to A");
}

void RowsModelBase::setOrderHeld(bool held) {
    if (held == isHeld)
        return;
    isHeld = held;
    if (!held)
        settle();
}

void RowsModelBase::sort(int column, Qt::SortOrder wanted) {
    sortedBy = column >= 0 && column < columnCount() && this->column(column).isSortable ? column : -1;
    direction = wanted;
    settle();
    if (columnCount() > 0)
        Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

void RowsModelBase::begin() {
    ++round;
    placed = 0;
    fresh.clear();
}

std::optional<std::size_t> RowsModelBase::place(std::optional<std::size_t> known) {
    std::size_t at = 0;
    if (known) {
        at = *known;
        if (slots[at].round == round)
            return std::nullopt;
        gone.erase(at);
    } else if (freeSlots.empty()) {
        at = slots.size();
        slots.emplace_back();
    } else {
        at = freeSlots.back();
        freeSlots.pop_back();
    }
    slots[at].round = round;
    slots[at].position = placed++;
    if (!known)
        fresh.push_back(at);
    return at;
}

void RowsModelBase::finish(bool settles) {
    const bool keepsOrder = isHeld && !settles && !order.empty();
    if (keepsOrder)
        for (const std::size_t slot : order)
            if (slots[slot].round != round && !gone.contains(slot))
                keepRemains(slot);
    append(fresh);
    if (keepsOrder)
        dropSurplus();
    else
        settle();
    if (!order.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

/// Puts the order right and lets go of gone rows: these move to the end first, so that one removal takes them all.
void RowsModelBase::settle() {
    std::vector<Key> sorted = keys();
    const auto comesFirst = [this](const Key& one, const Key& other) {
        const int compared = one.compare(other);
        if (compared != 0)
            return direction == Qt::AscendingOrder ? compared < 0 : compared > 0;
        return comesBefore(one.slot, other.slot);
    };
    if (!std::ranges::is_sorted(sorted, comesFirst))
        std::ranges::sort(sorted, comesFirst);
    std::vector<std::size_t> wanted;
    wanted.reserve(order.size());
    for (const Key& key : sorted)
        wanted.push_back(key.slot);
    const std::size_t live = wanted.size();
    for (const std::size_t slot : order)
        if (slots[slot].round != round)
            wanted.push_back(slot);
    reorder(std::move(wanted));
    removeFrom(live);
}

/// Of the rows that are there, in their present order.
std::vector<RowsModelBase::Key> RowsModelBase::keys() {
    std::vector<Key> made;
    made.reserve(order.size());
    for (const std::size_t at : order) {
        Slot& slot = slots[at];
        if (slot.round != round)
            continue;
        Key key{.slot = at};
        const SortKey value = sortedBy < 0 ? SortKey(static_cast<double>(slot.position)) : sortKeyOf(at, sortedBy);
        if (const double* number = std::get_if<double>(&value); number && !std::isnan(*number)) {
            key.kind = 1;
            key.number = *number;
        } else if (const std::string_view* name = std::get_if<std::string_view>(&value)) {
            key.kind = 2;
            key.text = collated(slot, *name);
        }
        made.push_back(key);
    }
    return made;
}

std::string_view RowsModelBase::collated(Slot& slot, std::string_view name) const {
    if (slot.collation.empty() || slot.text != name) {
        slot.text = name;
        slot.collation = collationKey(name);
    }
    return slot.collation;
}

void RowsModelBase::append(const std::vector<std::size_t>& joining) {
    if (joining.empty())
        return;
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(joining.size()) - 1);
    for (const std::size_t slot : joining) {
        slots[slot].row = rowCount();
        order.push_back(slot);
    }
    endInsertRows();
}

void RowsModelBase::removeFrom(std::size_t row) {
    if (row == order.size())
        return;
    const std::vector<std::size_t> leaving(order.begin() + static_cast<std::ptrdiff_t>(row), order.end());
    beginRemoveRows({}, static_cast<int>(row), rowCount() - 1);
    order.resize(row);
    std::ranges::for_each(leaving, [this](std::size_t slot) { release(slot); });
    endRemoveRows();
}

void RowsModelBase::release(std::size_t slot) {
    forget(slot);
    gone.erase(slot);
    slots[slot] = {};
    freeSlots.push_back(slot);
}

void RowsModelBase::keepRemains(std::size_t slot) {
    Remains remains;
    for (int column = 0; column < columnCount(); ++column) {
        Cell last = cellOf(slot, column);
        last.heat.reset();
        last.bar.reset();
        last.tone = Tone::text3;
        remains.cells.push_back(std::move(last));
        remains.icons.push_back(iconOf(slot, column, Type::px(iconSize), qGuiApp->devicePixelRatio()));
    }
    gone.emplace(slot, std::move(remains));
}

/// Too many gone rows: those nearest to the end go, where they joined while the order was held, far from the pointer.
void RowsModelBase::dropSurplus() {
    for (std::size_t row = order.size(); gone.size() > mostGone && row-- > 0;) {
        const std::size_t slot = order[row];
        if (!gone.contains(slot))
            continue;
        const int at = static_cast<int>(row);
        beginRemoveRows({}, at, at);
        order.erase(order.begin() + at);
        release(slot);
        for (std::size_t below = row; below < order.size(); ++below)
            slots[order[below]].row = static_cast<int>(below);
        endRemoveRows();
    }
}

void RowsModelBase::reorder(std::vector<std::size_t> wanted) {
    if (wanted == order)
        return;
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList known = persistentIndexList();
    const std::vector<std::size_t> former = std::exchange(order, std::move(wanted));
    for (std::size_t row = 0; row < order.size(); ++row)
        slots[order[row]].row = static_cast<int>(row);
    QModelIndexList moved;
    moved.reserve(known.size());
    for (const QModelIndex& one : known)
        moved += index(slots[former[static_cast<std::size_t>(one.row())]].row, one.column());
    changePersistentIndexList(known, moved);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

} // namespace ostrivane
