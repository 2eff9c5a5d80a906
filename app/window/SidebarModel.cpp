#include "app/window/SidebarModel.hpp"

#include "app/model/AppState.hpp"
#include "app/widgets/Strings.hpp"
#include "core/model/PlatformWords.hpp"

namespace ostrivane {

SidebarModel::SidebarModel(Part part, const PlatformWords& words, QObject* parent) : QAbstractListModel(parent) {
    if (part == Part::settings) {
        all.push_back({.title = text(title(Page::settings, words)), .page = Page::settings});
    } else {
        for (const PageSection& section : pageSections()) {
            if (section.title)
                all.push_back({.title = text(*section.title)});
            for (const Page page : section.pages)
                all.push_back({.title = text(title(page, words)), .page = page});
        }
    }
    setFilter({});
}

void SidebarModel::setFilter(const QString& wanted) {
    beginResetModel();
    shown.clear();
    for (std::size_t i = 0; i < all.size(); ++i)
        if (wanted.isEmpty() || (all[i].page && all[i].title.contains(wanted, Qt::CaseInsensitive)))
            shown.push_back(i);
    endResetModel();
}

void SidebarModel::update(const AppState& state, Date now, Date midnight) {
    std::vector<bool> changed(all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        Row& row = all[i];
        if (!row.page)
            continue;
        SidebarValue value = sidebarValue(*row.page, state, now, midnight);
        if (value == row.value)
            continue;
        row.value = std::move(value);
        changed[i] = true;
    }
    for (std::size_t i = 0; i < shown.size(); ++i)
        if (const QModelIndex row = index(static_cast<int>(i)); changed[shown[i]])
            Q_EMIT dataChanged(row, row);
}

std::optional<int> SidebarModel::indexOf(Page page) const {
    for (std::size_t i = 0; i < shown.size(); ++i)
        if (all[shown[i]].page == page)
            return static_cast<int>(i);
    return std::nullopt;
}

std::optional<int> SidebarModel::firstPage() const {
    for (std::size_t i = 0; i < shown.size(); ++i)
        if (all[shown[i]].page)
            return static_cast<int>(i);
    return std::nullopt;
}

int SidebarModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown.size());
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const Row& wanted = row(index.row());
    if (role == Qt::DisplayRole)
        return wanted.title;
    if (role == Qt::AccessibleTextRole) {
        const QString& said = wanted.value.words.isEmpty() ? wanted.value.text : wanted.value.words;
        return said.isEmpty() ? wanted.title : QStringLiteral("%1, %2").arg(wanted.title, said);
    }
    return {};
}

Qt::ItemFlags SidebarModel::flags(const QModelIndex& index) const {
    return index.isValid() && row(index.row()).page ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

} // namespace ostrivane
