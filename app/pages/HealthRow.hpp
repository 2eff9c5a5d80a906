#pragma once

#include "app/pages/OverviewText.hpp"

#include <QAbstractButton>

namespace ostrivane {

class Badge;
class SymbolMark;
class TextLabel;

/// A side of the machine's condition: icon, name and badge; a button to the page that explains it.
class HealthRow final : public QAbstractButton {
    Q_OBJECT
public:
    explicit HealthRow(QWidget* parent = nullptr);
    void set(const HealthLine& line);
    const HealthLine& line() const { return shown; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    HealthLine shown;
    SymbolMark* symbol = nullptr;
    TextLabel* name = nullptr;
    Badge* badge = nullptr;
};

} // namespace ostrivane
