#pragma once

#include "app/pages/AppShareTables.hpp"
#include "app/pages/ResourcePage.hpp"
#include "app/pages/ResourceTable.hpp"
#include "core/model/Date.hpp"

#include <cstdint>
#include <optional>
#include <string>

class QBoxLayout;

namespace ostrivane {

class Badge;
class Bar;
class Card;
class Gauge;
class InfoNote;
class KeyValueList;
class Legend;
class StatGrid;

class MemoryPage final : public ResourcePage {
    Q_OBJECT
public:
    explicit MemoryPage(PageContext& context, QWidget* parent = nullptr);

protected:
    QWidget* mainWidget() const override;
    void refresh(const ModelChanges& changes) override;
    void refreshCharts() override;
    void narrowChanged() override;

private:
    void addParts();
    void addPressure();
    void addCharts();
    void addApplications();
    void askForPeak();
    void refreshFigures();
    void refreshAxis();
    void refreshTable();

    QBoxLayout* top = nullptr;
    Bar* bar = nullptr;
    StatGrid* parts = nullptr;
    StatGrid* stats = nullptr;
    InfoNote* swapNote = nullptr;
    Card* pressureCard = nullptr;
    Gauge* gauge = nullptr;
    Badge* condition = nullptr;
    KeyValueList* pressureFacts = nullptr;
    QBoxLayout* charts = nullptr;
    Card* usedCard = nullptr;
    Legend* usedLegend = nullptr;
    ResourceChart* usedChart = nullptr;
    Card* swapCard = nullptr;
    Legend* swapLegend = nullptr;
    ResourceChart* swapChart = nullptr;
    Card* applicationsCard = nullptr;
    ResourceTable<MemoryAppRow, std::string> applications;

    std::uint64_t axisTotal = 0; ///< bytes at the upper end of the chart's axis
    std::optional<Date> askedForPeak;
    std::optional<double> peakToday; ///< percent
};

} // namespace ostrivane
