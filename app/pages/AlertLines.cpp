#include "app/pages/AlertLines.hpp"

#include "app/widgets/Strings.hpp"

#include <algorithm>
#include <cstddef>
#include <set>
#include <utility>

namespace ostrivane {

namespace {

auto identity(const AlertLine& line) {
    return std::pair(line.id, line.dayStart);
}

auto identities(const std::vector<AlertLine>& lines) {
    std::set<decltype(identity(lines.front()))> found;
    for (const AlertLine& line : lines)
        found.insert(identity(line));
    return found;
}

} // namespace

void AlertLines::assign(std::vector<AlertLine> fresh) {
    if (fresh == lines)
        return;
    if (!lines.empty() && !fresh.empty()) {
        removeGone(fresh);
        insertNew(fresh);
    }
    if (!std::ranges::equal(lines, fresh, {}, identity, identity)) { // nothing in common, or in another order
        beginResetModel();
        lines = std::move(fresh);
        endResetModel();
        return;
    }
    for (int row = 0; row < rowCount(); ++row) {
        AlertLine& line = lines[static_cast<std::size_t>(row)];
        AlertLine& now = fresh[static_cast<std::size_t>(row)];
        if (line == now)
            continue;
        line = std::move(now);
        Q_EMIT dataChanged(index(row), index(row));
    }
}

void AlertLines::removeGone(const std::vector<AlertLine>& fresh) {
    const auto wanted = identities(fresh);
    for (int row = rowCount() - 1; row >= 0; --row) {
        const auto place = lines.begin() + row;
        if (wanted.contains(identity(*place)))
            continue;
        beginRemoveRows({}, row, row);
        lines.erase(place);
        endRemoveRows();
    }
}

void AlertLines::insertNew(const std::vector<AlertLine>& fresh) {
    const auto known = identities(lines);
    for (int row = 0; row < static_cast<int>(fresh.size()); ++row) {
        const AlertLine& line = fresh[static_cast<std::size_t>(row)];
        if (known.contains(identity(line)))
            continue;
        const int place = std::min(row, rowCount());
        beginInsertRows({}, place, place);
        lines.insert(lines.begin() + place, line);
        endInsertRows();
    }
}

const AlertLine* AlertLines::line(const QModelIndex& place) const {
    return place.isValid() && place.row() < rowCount() ? &lines[static_cast<std::size_t>(place.row())] : nullptr;
}

int AlertLines::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(lines.size());
}

QVariant AlertLines::data(const QModelIndex& place, int role) const {
    const AlertLine* shown = line(place);
    if (!shown)
        return {};
    switch (role) {
    case Qt::DisplayRole: // for search by typing
        return text(shown->title);
    case Qt::AccessibleTextRole:
        return text(spoken(*shown));
    default:
        return {};
    }
}

Qt::ItemFlags AlertLines::flags(const QModelIndex& place) const {
    const AlertLine* shown = line(place);
    return shown && shown->id ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren
                              : Qt::ItemFlags(Qt::ItemNeverHasChildren);
}

} // namespace ostrivane
