#pragma once

#include "app/pages/PageView.hpp"

#include <vector>

namespace ostrivane {

class Banner;
class Card;
class CardGrid;
class CategoryCard;
class EmptyState;
class EvidenceList;
class Freshness;
class TextLabel;

/// The machine's condition side by side, with the evidence, and what stands out.
class HealthPage final : public PageView {
public:
    explicit HealthPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
    void sleep() override;
    void narrowChanged() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();
    QWidget* makeInsights();
    QWidget* makeAlerts();
    void showHealth();
    void showInsights();
    void showAlerts();

    TextLabel* updated = nullptr;
    Freshness* freshness = nullptr;
    EmptyState* notJudged = nullptr;
    Banner* banner = nullptr;
    CardGrid* categoryGrid = nullptr;
    std::vector<CategoryCard*> categories;
    CardGrid* findings = nullptr;
    EvidenceList* insights = nullptr;
    EmptyState* noInsights = nullptr;
    Card* alertCard = nullptr;
    EvidenceList* alerts = nullptr;
    EmptyState* noAlerts = nullptr;
    TextLabel* rules = nullptr;
};

} // namespace ostrivane
