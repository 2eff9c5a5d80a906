#pragma once

#include "app/widgets/ChartAxis.hpp"
#include "app/widgets/ChartData.hpp"

#include <QWidget>

#include <vector>

class QStackedLayout;

namespace ostrivane {

class EmptyState;
class HistoryChart;
class HistoryFeed;
class LiveChart;

/// A figure's last minutes, or its past: one chart of each kind in the same place, and a line of text where the history
/// is too short to draw.
class ResourceChart final : public QWidget {
public:
    /// @param name  of the metric: "CPU"
    explicit ResourceChart(const QString& name, QWidget* parent = nullptr);

    void setAxis(const ChartAxis& axis);
    void setStacked(bool stacked);
    void setPlotHeight(int pixels); ///< at least; the chart takes more where there is room

    void showLive(std::vector<ChartLine> lines, double now);
    /// Axes alone until the feed has its answer.
    void showPast(std::vector<HistoryLine> lines, const HistoryFeed& feed);

private:
    QStackedLayout* stack = nullptr;
    LiveChart* live = nullptr;
    HistoryChart* past = nullptr;
    EmptyState* empty = nullptr;
};

/// Whether lines of the past have enough points to be drawn.
bool isDrawable(const std::vector<HistoryLine>& lines);

} // namespace ostrivane
