#include "app/pages/RuleNumberField.hpp"

#include "app/widgets/Stepper.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QHBoxLayout>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double usualStepper = 98;

} // namespace

RuleNumberField::RuleNumberField(const QString& caption, const QString& name, const RuleNumber& number, QWidget* parent)
    : QWidget(parent), scale(number.scale), decimals(number.decimals),
      stepper(new Stepper(name, number.least, number.most, this)) {
    auto* label = new TextLabel(TypeRole::secondary, Tone::text2, this);
    label->setText(caption);
    label->setFixedWidth(std::max(Type::px(104), label->sizeHint().width() + Type::px(8)));
    auto* unit = new TextLabel(TypeRole::secondary, Tone::text2, this);
    unit->setText(text(number.unit));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Type::px(8));
    row->addWidget(label);
    row->addWidget(stepper);
    row->addWidget(unit, 1);
    stepper->setDecimals(decimals);
    set(number);
    connect(stepper, &Stepper::valueChosen, this, [this](double value) { Q_EMIT chosen(value * scale); });
}

bool RuleNumberField::canShow(const RuleNumber& number) const {
    return number.scale >= scale; // what is whole minutes is whole seconds
}

void RuleNumberField::set(const RuleNumber& number) {
    if (number.decimals > decimals)
        stepper->setDecimals(decimals = number.decimals);
    stepper->setValue(number.value * number.scale / scale);
}

int RuleNumberField::leastStepperWidth() const {
    return std::max(Type::px(usualStepper), stepper->sizeHint().width());
}

void RuleNumberField::setStepperWidth(int width) {
    stepper->setFixedWidth(width);
}

} // namespace ostrivane
