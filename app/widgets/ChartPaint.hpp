#pragma once

#include "app/widgets/ChartData.hpp"
#include "app/widgets/ChartGrid.hpp"
#include "app/widgets/ChartShape.hpp"

#include <QColor>
#include <QPolygonF>
#include <QRectF>

#include <span>
#include <vector>

class QPainter;

namespace ostrivane {

/// Where times and values lie in a widget.
struct ChartSpace {
    QRectF plot;
    double since = 0;
    double until = 1;
    double lower = 0;
    double upper = 1;

    qreal x(double time) const { return plot.left() + (time - since) / (until - since) * plot.width(); }
    qreal y(double value) const { return plot.bottom() - (value - lower) / (upper - lower) * plot.height(); }
    double time(qreal x) const { return since + (x - plot.left()) / plot.width() * (until - since); }
};

/// How a piece of a line looks.
struct RunLook {
    Series series = Series::s1;
    qreal width = 1.5;
    qreal opacity = 1;
    bool isDashed = false;
    qreal areaOpacity = 0; ///< 0: no area
};

/// A line in its pieces, with those of its peaks.
struct LineRuns {
    Series series = Series::s1;
    bool isDashed = false; ///< dashed, and without an area
    std::vector<ChartShape::Run> runs;
    std::vector<ChartShape::Run> peaks{};
};

/// The drawing that all charts share.
namespace ChartPaint {

inline constexpr qreal areaOpacity = 0.14;
inline constexpr qreal partOpacity = 0.32; ///< of a part that lies on another

/// Width at the right that the labels of `grid` take, the gap to the plot included. At least 46 at a base of 13.
int axisWidth(const ChartGrid& grid);

/// Lines, base line and labels, around `plot`. Labels of times that would touch one another are left out.
/// @param width  of the widget
void drawGrid(QPainter& painter, const QRectF& plot, const ChartGrid& grid, qreal width);

/// A line through points. Dashes are 4 long and 3 apart.
void drawStroke(QPainter& painter, const QPolygonF& line, const QColor& colour, qreal width, bool isDashed);

/// The ground between a line and its base. Its upper edge is rough: the line goes over it.
void drawArea(QPainter& painter, const QPolygonF& outline, const QColor& colour);

/// @param floor  what the area stands on: a line below, or else the value 0
void drawRun(QPainter& painter, const ChartSpace& space, std::span<const TimedValue> run, const RunLook& look,
             std::span<const TimedValue> floor = {});

/// The lines of a chart, with their areas where its scale begins at zero or below. Of many points in a column of pixels
/// the least and the greatest are drawn.
/// @param areStacked  each is a part that stands on the line ahead of it
void drawLines(QPainter& painter, const ChartSpace& space, std::vector<LineRuns> lines, bool areStacked);

void drawThreshold(QPainter& painter, const ChartSpace& space, const ChartThreshold& threshold);
void drawBand(QPainter& painter, const ChartSpace& space, const ChartBand& band);

} // namespace ChartPaint

} // namespace ostrivane
