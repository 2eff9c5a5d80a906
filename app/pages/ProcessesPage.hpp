#pragma once

#include "app/pages/PageView.hpp"
#include "app/pages/ProcessTable.hpp"
#include "app/widgets/RowsModel.hpp"

#include <cstdint>
#include <optional>

class QStackedWidget;

namespace ostrivane {

class EmptyState;
class FilterField;
class ProcessPanelView;
class SegmentedControl;
class TableView;

/// Every process of the machine, by name, use, owner and application; below the table who the selected one is.
class ProcessesPage final : public PageView {
public:
    explicit ProcessesPage(PageContext& context, QWidget* parent = nullptr);

    QWidget* filterField() override;
    bool closeDetail() override;

protected:
    QWidget* mainWidget() const override;
    void refresh(const ModelChanges& changes) override;
    void narrowChanged() override;

private:
    QWidget* makeToolbar();
    QWidget* makeBody();
    void showRows();
    void applyPane();
    void showSelection();
    void showPanel();
    void applyFilter();
    void clearFilter();
    bool isFiltered() const;
    void rowSelected(int row);
    void reveal(const ProcessSnapshot& process);
    void showMenu(int row, QPoint global);

    const ProcessSnapshot* selected() const;

    ProcessHeat heat;
    RowsModel<ProcessRow, std::int32_t>* rows = nullptr;
    FilterField* filter = nullptr;
    SegmentedControl* scope = nullptr;
    QWidget* heldNotice = nullptr;
    TableView* table = nullptr;
    EmptyState* empty = nullptr;
    QStackedWidget* pane = nullptr;
    ProcessPanelView* panel = nullptr;
    TextLabel* note = nullptr;
    TextLabel* restricted = nullptr;
    std::optional<ProcessSnapshot> lastSelected; ///< as it was seen last
    std::optional<std::int32_t> shownPID;        ///< the model's selection, when it was shown last
};

} // namespace ostrivane
