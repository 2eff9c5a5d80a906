#include "app/pages/HealthPage.hpp"

#include "app/pages/CategoryCard.hpp"
#include "app/pages/Findings.hpp"
#include "app/pages/Freshness.hpp"
#include "app/pages/HealthText.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/CardGrid.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/EvidenceList.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"
#include "core/judgement/AlertRuleChange.hpp"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double cardGap = 12;
constexpr int wideColumns = 3;
constexpr int narrowColumns = 2;
constexpr double leastCard = 260;

} // namespace

HealthPage::HealthPage(PageContext& given, QWidget* parent) : PageView(Page::health, given, parent) {
    setSubtitle(QStringLiteral("What each part of the machine is doing, and why it was judged so"));
    updated = new TextLabel(TypeRole::secondary, Tone::text2, this);
    addHeaderControl(updated);
    freshness = new Freshness(context, updated, this);

    auto* body = new QWidget(this);
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Type::px(cardGap));
    notJudged = new EmptyState(Icons::nameOf(Page::health), body);
    notJudged->set(QStringLiteral("Measuring…"));
    banner = new Banner(body);
    categoryGrid = new CardGrid(wideColumns, body);
    findings = new CardGrid(2, body);
    findings->setStretch(0, 5);
    findings->setStretch(1, 4);
    findings->add(makeInsights());
    findings->add(makeAlerts());
    column->addWidget(banner);
    column->addWidget(notJudged, 1);
    column->addWidget(categoryGrid);
    column->addWidget(findings);
    column->addStretch(1);
    setBody(body, false);
}

QWidget* HealthPage::makeInsights() {
    auto* card = new Card(QStringLiteral("Insights"), this);
    card->setNote(QStringLiteral("What stands out right now"));
    insights = new EvidenceList(QStringLiteral("Insights"), card);
    connect(insights, &EvidenceList::activated, this, [this](const std::string& id) { openInsight(model(), id); });
    noInsights = new EmptyState({}, card);
    noInsights->set(QStringLiteral("Nothing stands out right now."));
    card->body()->addWidget(insights);
    card->body()->addWidget(noInsights);
    card->body()->addStretch(1);
    return card;
}

QWidget* HealthPage::makeAlerts() {
    alertCard = new Card(QStringLiteral("Alerts in the last 24 hours"), this);
    auto* all = new LinkButton(QStringLiteral("All alerts"), alertCard);
    alertCard->addControl(all);
    alerts = new EvidenceList(QStringLiteral("Alerts in the last 24 hours"), alertCard);
    noAlerts = new EmptyState({}, alertCard);
    noAlerts->set(QStringLiteral("No alerts"), QStringLiteral("When a rule fires, it is listed here."));
    rules = new TextLabel(TypeRole::secondary, Tone::text2, alertCard);
    auto* edit = new LinkButton(QStringLiteral("Edit rules"), alertCard);
    for (LinkButton* link : {all, edit})
        connect(link, &QAbstractButton::clicked, this, [this] { model().select(Page::alerts); });
    auto* foot = new QHBoxLayout;
    foot->addWidget(rules, 1);
    foot->addWidget(edit);
    auto* inside = alertCard->body();
    inside->addWidget(alerts);
    inside->addWidget(noAlerts);
    inside->addStretch(1);
    inside->addWidget(Card::separator(alertCard));
    inside->addSpacing(Type::px(6));
    inside->addLayout(foot);
    return alertCard;
}

void HealthPage::refresh(const ModelChanges& changes) {
    showHealth();
    if (changes.snapshot || changes.insights)
        showInsights();
    if (changes.snapshot || changes.alerts)
        showAlerts();
    freshness->look();
}

void HealthPage::sleep() {
    freshness->sleep();
}

void HealthPage::narrowChanged() {
    arrange();
}

void HealthPage::resizeEvent(QResizeEvent* event) {
    PageView::resizeEvent(event);
    arrange();
}

/// With large lettering in a small window there is room for fewer columns still.
void HealthPage::arrange() {
    const int columns = isNarrow() ? narrowColumns : wideColumns;
    categoryGrid->setColumns(std::clamp(width() / Type::px(leastCard), 1, columns));
    findings->setColumns(isNarrow() ? 1 : 2);
}

void HealthPage::showHealth() {
    const HealthText text = presentHealth(state(), context.words);
    const bool isJudged = !text.cards.empty();
    banner->set(text.condition, text.summary, text.count);
    notJudged->setVisible(!isJudged);
    categoryGrid->setVisible(isJudged);
    findings->setVisible(isJudged);
    while (categories.size() < text.cards.size()) {
        auto* card = new CategoryCard(categoryGrid);
        connect(card, &CategoryCard::opened, this, [this](Page page) { model().select(page); });
        categoryGrid->add(card);
        categories.push_back(card);
    }
    for (std::size_t index = 0; index < categories.size(); ++index) {
        categoryGrid->setShown(categories[index], index < text.cards.size());
        if (index < text.cards.size())
            categories[index]->set(text.cards[index]);
    }
}

void HealthPage::showInsights() {
    insights->set(insightRows(state().insights));
    insights->setVisible(!insights->rows().empty());
    noInsights->setVisible(insights->rows().empty());
}

void HealthPage::showAlerts() {
    RecentAlerts recent = presentRecentAlerts(state(), context.now());
    alertCard->setNote(recent.note);
    alerts->setVisible(!recent.rows.empty());
    noAlerts->setVisible(recent.rows.empty());
    alerts->set(std::move(recent.rows));
    const AppSettings& settings = model().settings();
    rules->setText(rulesText(effectiveRules(settings->alertRules), settings->notificationsEnabled));
}

} // namespace ostrivane
