#pragma once

#include "app/widgets/Chart.hpp"
#include "app/widgets/ChartAxis.hpp"
#include "app/widgets/ChartData.hpp"

#include <optional>
#include <vector>

namespace ostrivane {

/// The last five minutes of one or more figures, the newest at the right edge. Reads out under the pointer, and with
/// Left, Right, Home and End when it has focus. Tells assistive programs its name and, when asked, a sentence of its
/// figures.
class LiveChart final : public Chart {
public:
    /// @param name  of the metric: "CPU"
    explicit LiveChart(const QString& name, QWidget* parent = nullptr);

    void setAxis(ChartAxis axis);
    /// Lines lie on top of each other, the first at the bottom, each as a filled part.
    void setStacked(bool stacked);
    void setThreshold(std::optional<ChartThreshold> threshold);
    /// Without labels, and lower: for a small chart beside figures.
    void setCompact(bool compact);
    /// @param now  the time of the right edge
    void setLines(std::vector<ChartLine> lines, double now);

protected:
    QString summary() const override;
    ChartGrid makeGrid(GridDetail detail) const override;
    void drawLines(QPainter& painter, const ChartSpace& space) const override;
    std::vector<double> sampleTimes() const override;
    ChartReading reading(double time) const override;

private:
    void refresh();
    /// What is drawn: the lines' own points, or sums where they lie on top of each other.
    std::vector<std::vector<TimedValue>> heights() const;

    ChartAxis axis;
    AxisScale scale;
    std::vector<ChartLine> lines;
    std::optional<ChartThreshold> threshold;
    double now = 0;
    bool isStacked = false;
};

} // namespace ostrivane
