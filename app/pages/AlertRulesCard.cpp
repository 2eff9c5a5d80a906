#include "app/pages/AlertRulesCard.hpp"

#include "app/model/AppModel.hpp"
#include "app/pages/AlertRuleRow.hpp"
#include "app/pages/AlertRuleText.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/MessageDialog.hpp"
#include "app/widgets/Scrolling.hpp"
#include "app/widgets/Strings.hpp"

#include <QScrollArea>
#include <QVBoxLayout>

namespace ostrivane {

AlertRulesCard::AlertRulesCard(PageContext& given, QWidget* parent) : QWidget(parent), context(given) {
    card = new Card(tr("Rules"), this);
    card->setFlush(true);
    auto* restore = new LinkButton(tr("Restore Defaults…"), card);
    connect(restore, &QAbstractButton::clicked, this, [this] { restoreDefaults(); });
    card->addControl(restore);

    auto* list = new QWidget;
    auto* column = new QVBoxLayout(list);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (const AlertRule& rule : effectiveRules(context.model.settings()->alertRules)) {
        auto* row = new AlertRuleRow(rule, list);
        connect(row, &AlertRuleRow::changeWanted, this,
                [this, kind = rule.kind](const AlertRuleChange& wanted) { change(kind, wanted); });
        column->addWidget(row);
        rows.push_back(row);
    }
    column->addStretch(1);

    card->body()->addWidget(scrolling(list, card));
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(card);
    refresh();
}

void AlertRulesCard::refresh() {
    const auto rules = effectiveRules(context.model.settings()->alertRules);
    for (std::size_t index = 0; index < rows.size(); ++index)
        rows[index]->set(rules[index]);
    card->setNote(text(rulesSummary(rules)));
}

void AlertRulesCard::change(AlertKind kind, const AlertRuleChange& wanted) {
    if (auto edited = withChange(context.model.settings()->alertRules, kind, wanted)) {
        context.model.settings().set(&Preferences::alertRules, std::move(*edited));
        context.model.applySettings();
    }
    refresh(); // a refused number gives way to the one that holds
}

void AlertRulesCard::restoreDefaults() {
    if (!MessageDialog::ask({.condition = Condition::elevated,
                             .heading = tr("Restore the default rules?"),
                             .text = tr("Your thresholds and switches are replaced."),
                             .confirm = tr("Restore"),
                             .kind = ButtonKind::confirming,
                             .cancel = tr("Cancel")},
                            window()))
        return;
    context.model.settings().set(&Preferences::alertRules, {AlertRule::defaults.begin(), AlertRule::defaults.end()});
    context.model.applySettings();
}

} // namespace ostrivane
