#pragma once

#include "app/widgets/ChartAxis.hpp"

#include <QString>

#include <vector>

namespace ostrivane {

/// A line across a plot at a share of its height (0 the lower end), with its label; empty: none.
struct GridHeight {
    double share = 0;
    QString label{};
    bool isBase = false; ///< what areas stand on

    friend bool operator==(const GridHeight&, const GridHeight&) = default;
};

/// A moment at a share of a plot's width (0 the left end).
struct GridTime {
    double share = 0;
    QString label{};

    friend bool operator==(const GridTime&, const GridTime&) = default;
};

/// What stands behind the lines of a chart.
struct ChartGrid {
    std::vector<GridHeight> heights;
    std::vector<GridTime> times; ///< in order, the last is the newest

    friend bool operator==(const ChartGrid&, const ChartGrid&) = default;
};

/// How much is written at the side of a plot; less where there is less height.
enum class GridDetail { none, middle, ends, all };

/// From the axis' lower end to `top`.
std::vector<GridHeight> axisHeights(const ChartAxis& axis, double top, GridDetail detail);

/// Where two directions end, both as positive values of one scale.
struct MirrorEnds {
    double up = 1;
    double down = 1;

    friend bool operator==(const MirrorEnds&, const MirrorEnds&) = default;
};
/// Each direction gets what it needs, at least a quarter of the whole, and then ends at a round figure too.
MirrorEnds mirrorEnds(const ChartAxis& axis, double upNeeds, double downNeeds);
std::vector<GridHeight> mirrorHeights(const ChartAxis& axis, const MirrorEnds& ends, GridDetail detail);

/// "5 min", "4", ... "now".
/// @param window  seconds
/// @param ending  behind the unit of the first: " ago"
/// @param most  steps at most
std::vector<GridTime> spanTimes(double window, const QString& ending, int most);

/// The local time of the clock, or days from midnight to midnight where two days or more are shown. The right edge is
/// "now".
/// @param since, until  seconds since 1970
std::vector<GridTime> clockTimes(double since, double until, int most);

} // namespace ostrivane
