#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"

#include <QString>
#include <QWidget>

#include <optional>
#include <vector>

namespace ostrivane {

/// A figure with its name and, behind it, a lighter remark: "Memory", "23.4 GB", "of 32.0 GB". Of a part of a bar with
/// its colour ahead of the name.
struct Stat {
    QString caption;
    QString value;
    QString remark{};
    Tone tone = Tone::text;
    std::optional<Series> series{};

    friend bool operator==(const Stat&, const Stat&) = default;
};

/// Figures in equal columns. Paints itself; setting equal figures paints nothing.
class StatGrid final : public QWidget, public AccessibleSentence {
    Q_OBJECT
public:
    explicit StatGrid(int columns, QWidget* parent = nullptr);
    void set(std::vector<Stat> stats);
    void setColumns(int columns);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::StaticText; }
    QString accessibleLabel() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<int> columnWidths() const;
    QRect cell(std::size_t index) const;

    std::vector<Stat> stats;
    int columns;
};

} // namespace ostrivane
