#pragma once

#include "app/pages/PageContext.hpp"
#include "core/judgement/AlertRuleChange.hpp"

#include <QWidget>

#include <vector>

namespace ostrivane {

class AlertRuleRow;
class Card;

/// The rules, each to be switched and changed. Every change holds at once.
class AlertRulesCard final : public QWidget {
public:
    explicit AlertRulesCard(PageContext& context, QWidget* parent = nullptr);
    /// Shows what is chosen now.
    void refresh();

private:
    void change(AlertKind kind, const AlertRuleChange& wanted);
    void restoreDefaults();

    PageContext& context;
    Card* card = nullptr;
    std::vector<AlertRuleRow*> rows; ///< in the order of the kinds
};

} // namespace ostrivane
