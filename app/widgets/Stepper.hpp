#pragma once

#include <QWidget>

class QDoubleSpinBox;

namespace ostrivane {

/// A number with its unit, a minus and a plus. A value outside of the range is shown as it is until the user changes
/// it.
class Stepper final : public QWidget {
    Q_OBJECT
public:
    Stepper(const QString& name, double least, double most, QWidget* parent = nullptr);
    double value() const;
    void setValue(double value); ///< signals nothing
    void setUnit(const QString& unit);
    void setDecimals(int decimals); ///< 0 at first; the step stays 1

Q_SIGNALS:
    /// The user set another one: at once by a step, by Enter or on leaving the field when typed.
    void valueChosen(double value);

private:
    void present(double value);

    QDoubleSpinBox* box = nullptr;
    double least;
    double most;
    double told = 0;
};

} // namespace ostrivane
