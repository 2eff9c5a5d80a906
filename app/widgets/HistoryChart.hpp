#pragma once

#include "app/widgets/Chart.hpp"
#include "app/widgets/ChartAxis.hpp"
#include "app/widgets/ChartData.hpp"

#include <optional>
#include <vector>

namespace ostrivane {

/// Hours or days of one or more figures: means as an area and a line, peaks as a thin line, gaps as gaps (where two
/// points lie more than 2.5 times the longer one's length apart). With more than one point in a column of pixels the
/// column's least and greatest are drawn. Reads out like `LiveChart`.
class HistoryChart final : public Chart {
    Q_OBJECT
public:
    explicit HistoryChart(const QString& name, QWidget* parent = nullptr);

    void setAxis(ChartAxis axis);
    /// Both in seconds since 1970; the right edge is `until`.
    void setRange(double since, double until);
    void setLines(std::vector<HistoryLine> lines);
    void setStacked(bool stacked);
    void setThreshold(std::optional<ChartThreshold> threshold);
    void setBands(std::vector<ChartBand> bands);
    using Chart::setReservedLabel;
    using Chart::setShowsReadout; ///< a box of its own beside the cursor; true at first
    using Chart::setShowsTimes;   ///< labels of time below; true at first
    /// For charts on one axis of time: shows the cursor there, without signalling.
    void setCursor(std::optional<double> time);
Q_SIGNALS:
    /// The pointer or a key moved the cursor to a time, or took it away.
    void cursorMoved(std::optional<double> time);

protected:
    QString summary() const override;
    ChartGrid makeGrid(GridDetail detail) const override;
    void drawLines(QPainter& painter, const ChartSpace& space) const override;
    std::vector<double> sampleTimes() const override;
    ChartReading reading(double time) const override;
    void userMovedCursor() override;

private:
    void refresh();
    std::vector<std::vector<HistoryPoint>> heights() const;

    ChartAxis axis;
    std::vector<HistoryLine> lines;
    std::vector<ChartBand> bands;
    std::optional<ChartThreshold> threshold;
    double since = 0;
    double until = 1;
    bool isStacked = false;
};

} // namespace ostrivane
