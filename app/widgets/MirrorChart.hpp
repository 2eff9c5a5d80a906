#pragma once

#include "app/widgets/Chart.hpp"
#include "app/widgets/ChartAxis.hpp"
#include "app/widgets/ChartData.hpp"

#include <vector>

namespace ostrivane {

/// Two directions of traffic over the last minutes: one up from a middle line, the other down, on one scale. Each half
/// is as tall as it needs, at least a quarter.
class MirrorChart final : public Chart {
public:
    explicit MirrorChart(const QString& name, QWidget* parent = nullptr);

    void setAxis(ChartAxis axis);
    void setLines(ChartLine up, ChartLine down, double now);

protected:
    QString summary() const override;
    ChartGrid makeGrid(GridDetail detail) const override;
    void drawLines(QPainter& painter, const ChartSpace& space) const override;
    std::vector<double> sampleTimes() const override;
    ChartReading reading(double time) const override;

private:
    void refresh();

    ChartAxis axis{.kind = ChartAxis::Kind::open};
    AxisScale upScale;
    AxisScale downScale;
    MirrorEnds ends;
    ChartLine up;
    ChartLine down;
    double now = 0;
};

} // namespace ostrivane
