#pragma once

#include "app/pages/OverviewTiles.hpp"
#include "app/pages/PageView.hpp"

#include <array>
#include <vector>

class QVBoxLayout;

namespace ostrivane {

class CardGrid;
class EmptyState;
class EvidenceList;
class Freshness;
class HealthRow;
class LinkButton;
class PushButton;
class RankList;
class TextLabel;
class TotalsList;
enum class RankFigure;

/// Everything at a glance: the page that stays open all day.
class OverviewPage final : public PageView {
public:
    explicit OverviewPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
    void sleep() override;
    void narrowChanged() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void makeHeader();
    QWidget* makeTiles();
    QWidget* makeInsights();
    QWidget* makeHealth();
    QWidget* makeRanks();
    QWidget* makeTotals();
    RankList* makeRank(QVBoxLayout* column, const QString& title, RankFigure figure);

    void arrange();
    void showHead();
    void showTiles();
    void showInsights();
    void showHealth();
    void showRanks();

    TextLabel* updated = nullptr;
    TextLabel* machine = nullptr;
    TextLabel* uptime = nullptr;
    PushButton* session = nullptr;
    Freshness* freshness = nullptr;
    CardGrid* tileGrid = nullptr;
    std::array<MetricTile*, tileKinds.size()> tiles{};
    int shownTiles = 0;
    CardGrid* cards = nullptr;
    EvidenceList* insights = nullptr;
    EmptyState* noInsights = nullptr;
    LinkButton* allInsights = nullptr;
    std::vector<HealthRow*> healthRows;
    QVBoxLayout* healthColumn = nullptr;
    TextLabel* notJudged = nullptr;
    RankList* byMemory = nullptr;
    RankList* byCPU = nullptr;
    TotalsList* totals = nullptr;
    bool wasMeasured = false;
};

} // namespace ostrivane
