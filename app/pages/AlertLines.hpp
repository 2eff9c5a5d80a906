#pragma once

#include "app/pages/AlertsText.hpp"

#include <QAbstractListModel>

#include <vector>

namespace ostrivane {

/// The list of alerts for a view. Lines are matched by identity from one assignment to the next, so that selection and
/// scroll position stay.
class AlertLines final : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    void assign(std::vector<AlertLine> lines);
    /// Null where there is none.
    const AlertLine* line(const QModelIndex& index) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    /// Days cannot be chosen.
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void removeGone(const std::vector<AlertLine>& fresh);
    void insertNew(const std::vector<AlertLine>& fresh);

    std::vector<AlertLine> lines;
};

} // namespace ostrivane
