#pragma once

#include "app/pages/AppShareTables.hpp"
#include "app/pages/ResourcePage.hpp"
#include "app/pages/ResourceTable.hpp"

#include <string>

class QBoxLayout;

namespace ostrivane {

class Card;
class EmptyState;
class KeyValueList;
class Legend;
class TextLabel;

class GPUPage final : public ResourcePage {
    Q_OBJECT
public:
    explicit GPUPage(PageContext& context, QWidget* parent = nullptr);

protected:
    QWidget* mainWidget() const override;
    void refresh(const ModelChanges& changes) override;
    void refreshCharts() override;
    void narrowChanged() override;

private:
    void addLoad();
    void addToday();
    void addApplications();

    EmptyState* missing = nullptr; ///< in place of all the rest
    QWidget* content = nullptr;
    QBoxLayout* top = nullptr;
    TextLabel* usage = nullptr;
    Legend* engines = nullptr;
    TextLabel* reachLabel = nullptr;
    ResourceChart* chart = nullptr;
    Card* todayCard = nullptr;
    KeyValueList* today = nullptr;
    QWidget* memoryLine = nullptr;
    KeyValueList* memory = nullptr;
    KeyValueList* temperature = nullptr;
    ResourceChart* heatChart = nullptr;
    EmptyState* noApplications = nullptr;
    ResourceTable<GPUAppRow, std::string> applications;
};

} // namespace ostrivane
