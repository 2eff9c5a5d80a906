#pragma once

#include "app/pages/ApplicationsText.hpp"
#include "app/pages/PageView.hpp"
#include "app/widgets/RowsModel.hpp"

#include <optional>
#include <string>

class QComboBox;
class QStackedWidget;

namespace ostrivane {

class AppDetail;
class EmptyState;
class FilterField;
class InfoNote;
class LinkButton;
class Switch;
class TableView;
class TextLabel;

/// Everything that runs, by the application that owns it, and one of them in detail.
class ApplicationsPage final : public PageView {
public:
    explicit ApplicationsPage(PageContext& context, QWidget* parent = nullptr);

    QWidget* filterField() override;
    bool closeDetail() override;

protected:
    QWidget* mainWidget() const override;
    void refresh(const ModelChanges& changes) override;
    void wake() override;
    void sleep() override;
    void narrowChanged() override;

private:
    using Rows = RowsModel<ApplicationRow, std::string>;

    QWidget* makeToolbar();
    void makeTable();
    QWidget* makeBody();

    void list(bool settles);
    void narrowDown();
    void showCounts();
    void showSelection();
    void makeVisible(const std::string& key);
    void arrange();
    void clearFilter();
    void openRow(int row);
    void showMenu(int row, const QPoint& place);
    void sortBy(ApplicationSort sort);
    void followSort();

    FilterField* filter = nullptr;
    QComboBox* sortMenu = nullptr;
    Switch* system = nullptr;
    TextLabel* counts = nullptr;
    QWidget* toolbar = nullptr;
    TableView* table = nullptr;
    Rows* rows = nullptr;
    QStackedWidget* places = nullptr; ///< the table, and what stands in place of an empty one
    EmptyState* empty = nullptr;
    QWidget* listing = nullptr; ///< the table with its foot
    InfoNote* foot = nullptr;
    QWidget* detailPlace = nullptr;
    LinkButton* backToList = nullptr;
    AppDetail* detail = nullptr;
    QString listedCounts;
    std::optional<std::string> shownKey; ///< the application in detail
};

} // namespace ostrivane
