#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"
#include "core/model/TimedValue.hpp"

#include <QRectF>
#include <QWidget>

#include <functional>
#include <span>
#include <vector>

class QPainter;

namespace ostrivane {

struct SparklineLook {
    Series series = Series::s1;
    double top = 1;      ///< the scale's upper end; the lower is 0
    double now = 0;      ///< time of the right edge
    double window = 300; ///< seconds
    bool isDashed = false;
    bool hasArea = true;

    friend bool operator==(const SparklineLook&, const SparklineLook&) = default;
};

/// A line without axes. A gap in the points, which are in the order of their time, is a gap in the line; values above
/// the scale stay at its upper end.
void drawSparkline(QPainter& painter, const QRectF& rect, std::span<const TimedValue> points,
                   const SparklineLook& look);

/// The same as a widget. `name` and a sentence of its figures are for assistive programs.
class Sparkline final : public QWidget, public AccessibleSentence {
public:
    explicit Sparkline(const QString& name, QWidget* parent = nullptr);
    void set(std::vector<TimedValue> points, const SparklineLook& look);
    /// How a figure reads. Without it `description` is empty.
    void setText(std::function<QString(double)> text);
    QString description() const;
    QAccessible::Role accessibleRole() const override { return QAccessible::Chart; }
    QString accessibleSentence() const override { return description(); }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<TimedValue> points;
    SparklineLook look;
    std::function<QString(double)> text;
};

} // namespace ostrivane
