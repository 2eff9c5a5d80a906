#pragma once

#include "app/pages/AlertRuleText.hpp"

#include <QWidget>

namespace ostrivane {

class Stepper;

/// A number of a rule with its caption ahead and its unit behind.
class RuleNumberField final : public QWidget {
    Q_OBJECT
public:
    /// @param name  what assistive programs call it
    RuleNumberField(const QString& caption, const QString& name, const RuleNumber& number, QWidget* parent = nullptr);

    /// Whether that number can be shown here: its unit may have become another one.
    bool canShow(const RuleNumber& number) const;
    void set(const RuleNumber& number);
    /// Pixels that the stepper needs, and those that it is given.
    int leastStepperWidth() const;
    void setStepperWidth(int width);

Q_SIGNALS:
    /// In the rule's own unit.
    void chosen(double value);

private:
    double scale;
    int decimals;
    Stepper* stepper = nullptr;
};

} // namespace ostrivane
