#include "app/widgets/Stepper.hpp"

#include "app/widgets/Type.hpp"

#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLocale>
#include <QSignalBlocker>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

/// Does not turn a page's scrolling into a change of a setting: the wheel counts only where the focus is.
class NumberBox final : public QDoubleSpinBox {
public:
    using QDoubleSpinBox::QDoubleSpinBox;

protected:
    void wheelEvent(QWheelEvent* event) override {
        if (hasFocus())
            QDoubleSpinBox::wheelEvent(event);
        else
            event->ignore();
    }
};

} // namespace

Stepper::Stepper(const QString& name, double lowest, double highest, QWidget* parent)
    : QWidget(parent), least(lowest), most(highest), told(lowest) {
    box = new NumberBox(this);
    box->setAccessibleName(name);
    box->setLocale(QLocale::c()); // figures are written alike in every language
    box->setDecimals(0);
    box->setRange(least, most);
    box->setKeyboardTracking(false);
    box->setFocusPolicy(Qt::StrongFocus);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(box);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusProxy(box);
    connect(box, &QDoubleSpinBox::valueChanged, this, [this](double chosen) {
        const double bounded = std::clamp(chosen, least, most);
        if (bounded == told)
            return;
        present(bounded);
        Q_EMIT valueChosen(told);
    });
}

double Stepper::value() const {
    return told;
}

void Stepper::setValue(double value) {
    if (value != told && std::isfinite(value))
        present(value);
}

void Stepper::setUnit(const QString& unit) {
    const QSignalBlocker quiet(box);
    box->setSuffix(unit.isEmpty() ? QString() : u' ' + unit);
}

void Stepper::setDecimals(int decimals) {
    const QSignalBlocker quiet(box);
    box->setDecimals(decimals);
    present(told); // a rounded one would stay rounded
}

void Stepper::present(double value) {
    const QSignalBlocker quiet(box);
    told = value;
    box->setRange(std::min(least, value), std::max(most, value));
    box->setValue(value);
}

} // namespace ostrivane
