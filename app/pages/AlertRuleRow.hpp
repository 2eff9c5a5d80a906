#pragma once

#include "app/pages/AlertRuleText.hpp"

#include <QWidget>

class QAbstractButton;
class QVBoxLayout;

namespace ostrivane {

class RuleNumberField;
class Switch;
class TextLabel;

/// A rule: on or off, what it says, and below it, once opened, its numbers.
class AlertRuleRow final : public QWidget {
    Q_OBJECT
public:
    explicit AlertRuleRow(const AlertRule& rule, QWidget* parent = nullptr);
    void set(const AlertRule& rule);

Q_SIGNALS:
    /// The user wants the rule so; the row shows it once it is set.
    void changeWanted(const ostrivane::AlertRuleChange& change);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QWidget* makeHead();
    void makeDetails();
    void setDetails();
    void alignFields();
    RuleNumberField* addField(QVBoxLayout& column, const QString& caption, const RuleNumber& number,
                              std::optional<double> AlertRuleChange::*member);
    void open(bool isOpen);

    AlertRule shown;
    QVBoxLayout* rows = nullptr;
    Switch* enabled = nullptr;
    TextLabel* line = nullptr;
    TextLabel* name = nullptr;
    QWidget* bell = nullptr;
    QAbstractButton* expander = nullptr;
    QWidget* details = nullptr; ///< made when first opened
    RuleNumberField* threshold = nullptr;
    RuleNumberField* lasting = nullptr; ///< null where the rule fires at once
    RuleNumberField* cooldown = nullptr;
    Switch* notify = nullptr;
};

} // namespace ostrivane
