#pragma once

#include "app/window/SidebarText.hpp"

#include <QAbstractListModel>

#include <cstddef>
#include <optional>
#include <vector>

namespace ostrivane {

struct PlatformWords;

/// The rows of the sidebar: titles of sections, which cannot be chosen, and pages.
class SidebarModel final : public QAbstractListModel {
public:
    struct Row {
        QString title;
        std::optional<Page> page{}; ///< absent for a section's title
        SidebarValue value{};
    };

    /// All sections, or the settings alone.
    enum class Part { sections, settings };
    SidebarModel(Part part, const PlatformWords& words, QObject* parent);

    /// Keeps the pages whose title contains `text`, without their sections; all rows for an empty text.
    void setFilter(const QString& text);
    void update(const AppState& state, Date now, Date midnight);

    const Row& row(int index) const { return all[shown[static_cast<std::size_t>(index)]]; }
    std::optional<int> indexOf(Page page) const;
    std::optional<int> firstPage() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    std::vector<Row> all;
    std::vector<std::size_t> shown; ///< indices of `all`
};

} // namespace ostrivane
