#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"

#include <QString>
#include <QWidget>

#include <optional>
#include <vector>

namespace ostrivane {

/// A name of a line or a part with its colour and its present figure. Without a series no square is drawn.
struct LegendEntry {
    std::optional<Series> series;
    QString name;
    QString value;

    friend bool operator==(const LegendEntry&, const LegendEntry&) = default;
};

/// What the colours of a chart stand for, in one row. What does not fit is left out from the end.
class Legend final : public QWidget, public AccessibleSentence {
    Q_OBJECT
public:
    explicit Legend(QWidget* parent = nullptr);
    void set(std::vector<LegendEntry> entries);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::StaticText; }
    QString accessibleLabel() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int entryWidth(const LegendEntry& entry) const;

    std::vector<LegendEntry> entries;
};

} // namespace ostrivane
