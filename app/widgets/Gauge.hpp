#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"

#include <QString>
#include <QWidget>

namespace ostrivane {

/// A part of a whole as an arc of 270 degrees, coloured by condition, with its figure and a caption in the middle.
class Gauge final : public QWidget, public AccessibleSentence {
    Q_OBJECT
public:
    explicit Gauge(QWidget* parent = nullptr);
    /// @param fraction  0 to 1
    /// @param name  what assistive programs call it
    void set(double fraction, const QString& value, const QString& caption, Condition condition, const QString& name);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    QAccessible::Role accessibleRole() const override { return QAccessible::Chart; }
    QString accessibleSentence() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double fraction = 0;
    QString value;
    QString caption;
    Condition condition = Condition::unknown;
};

} // namespace ostrivane
