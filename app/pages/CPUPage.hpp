#pragma once

#include "app/pages/CPUTables.hpp"
#include "app/pages/ResourcePage.hpp"
#include "app/pages/ResourceTable.hpp"

#include <array>
#include <cstdint>
#include <string>

class QBoxLayout;

namespace ostrivane {

class Card;
class CoreGrid;
class InfoNote;
class KeyValueList;
class Legend;
class LinkButton;
class SegmentedControl;
class TextLabel;

class CPUPage final : public ResourcePage {
    Q_OBJECT
public:
    explicit CPUPage(PageContext& context, QWidget* parent = nullptr);

protected:
    QWidget* mainWidget() const override;
    void refresh(const ModelChanges& changes) override;
    void refreshCharts() override;
    void narrowChanged() override;

private:
    void addLoad();
    void addCores();
    void addBusiest();
    void showBusiest();
    void refreshTables();

    QBoxLayout* top = nullptr;
    TextLabel* usage = nullptr;
    Legend* parts = nullptr;
    TextLabel* reachLabel = nullptr;
    ResourceChart* chart = nullptr;
    Card* loadCard = nullptr;
    QBoxLayout* loads = nullptr;
    std::array<KeyValueList*, 3> loadLists{};
    std::array<QWidget*, 2> loadLines{};
    InfoNote* note = nullptr;
    Legend* groups = nullptr;
    CoreGrid* cores = nullptr;
    Card* busiest = nullptr;
    SegmentedControl* subject = nullptr;
    LinkButton* all = nullptr;
    ResourceTable<CPUProcessRow, std::int32_t> processes;
    ResourceTable<CPUAppRow, std::string> applications;
};

} // namespace ostrivane
