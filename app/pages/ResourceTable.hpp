#pragma once

#include "app/model/AppModel.hpp"
#include "app/model/AppSettings.hpp"
#include "app/model/AppState.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/RowsModel.hpp"
#include "app/widgets/TableView.hpp"

#include <QStackedWidget>
#include <QString>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane {

/// Rows that a table within a card shows; the page that it links to has the rest.
inline constexpr int rowsInCard = 8;

/// A table within a card, sorted by one of its columns at first. Where there is nothing to list a line says why.
template <class Row, class ID>
struct ResourceTable {
    QStackedWidget* holder = nullptr; ///< what goes into the card
    TableView* view = nullptr;
    EmptyState* empty = nullptr;
    RowsModel<Row, ID>* rows = nullptr;

    /// @param missing  what is said where there is none at all
    void show(std::vector<Row> shown, const AppState& state, const QString& missing) const {
        if (!state.hasFirstSample)
            shown.clear();
        rows->assign(std::move(shown), state.snapshot);
        empty->set(state.hasFirstSample ? missing : QStringLiteral("Measuring…"));
        holder->setCurrentWidget(rows->rowCount() > 0 ? static_cast<QWidget*>(view) : empty);
    }

    /// All belongs to `parent`.
    /// @param id  under which the user's choices about the table are kept
    /// @param activated  called with the identity of a row that the user opens
    static ResourceTable make(const std::string& id, const QString& name, std::vector<TableColumn<Row>> columns,
                              std::string_view sortedBy, std::function<ID(const Row&)> identity,
                              std::function<void(const ID&)> activated, AppModel& model, QWidget* parent) {
        const auto sorted = std::ranges::find(columns, sortedBy, &TableColumn<Row>::id) - columns.begin();
        ResourceTable table;
        table.holder = new QStackedWidget(parent);
        table.holder->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        table.view = new TableView(id, name, &model.settings().defaults(), table.holder);
        table.empty = new EmptyState({}, table.holder);
        table.empty->set(QStringLiteral("Measuring…"));
        table.holder->addWidget(table.view);
        table.holder->addWidget(table.empty);
        table.rows = new RowsModel<Row, ID>(std::move(columns), std::move(identity), table.view);
        table.view->setRows(table.rows);
        table.view->setVisibleRows(rowsInCard);
        table.rows->sort(static_cast<int>(sorted), Qt::DescendingOrder);
        QObject::connect(table.view, &TableView::rowActivated, table.view,
                         [rows = table.rows, activated = std::move(activated)](int row) {
                             if (const std::optional<ID> opened = rows->id(row))
                                 activated(*opened);
                         });
        return table;
    }
};

} // namespace ostrivane
