#pragma once

#include "app/widgets/ChartData.hpp"
#include "core/model/TimedValue.hpp"

#include <algorithm>
#include <optional>
#include <span>
#include <vector>

namespace ostrivane {

/// How figures over time become lines. Points are in the order of their time.
namespace ChartShape {

using Run = std::vector<TimedValue>;

/// Pieces of a live line. It breaks where a step is longer than 2.5 times the longer of its neighbours, and longer than
/// the slowest choice of interval explains.
std::vector<Run> liveRuns(std::span<const TimedValue> points);

/// Pieces of a line of means. It breaks where two points lie more than 2.5 times the longer one's length apart. A mean
/// stands in the middle of its stretch; a piece begins and ends where its first and last stretch do.
std::vector<Run> historyRuns(std::span<const HistoryPoint> points);

/// The same for the peaks; it also breaks where a point has none.
std::vector<Run> peakRuns(std::span<const HistoryPoint> points);

/// The middle of a point's stretch.
inline double middle(const HistoryPoint& point) {
    return point.time + point.length / 2;
}

/// Leaves in each column of `width` seconds, counted from `since`, its least and its greatest point in their order; all
/// of a column with no more than two. What lies outside of `since` to `until` goes, but for the nearest point at each
/// side.
Run thinned(std::span<const TimedValue> run, double since, double until, double width);

/// Each line on top of those ahead of it. A time at which one of the lines has no point is left out of all; a line
/// without any points is left out of the sum.
template <class Point>
std::vector<std::vector<Point>> stacked(const std::vector<std::vector<Point>>& lines) {
    std::vector<std::vector<Point>> result(lines.size());
    std::vector<std::size_t> at(lines.size(), 0);
    const auto reference = std::ranges::find_if(lines, [](const auto& line) { return !line.empty(); });
    if (reference == lines.end())
        return result;
    for (const Point& first : *reference) {
        bool isWhole = true;
        for (std::size_t index = 0; index < lines.size(); ++index) {
            const auto& line = lines[index];
            while (at[index] < line.size() && line[at[index]].time < first.time)
                ++at[index];
            if (!line.empty() && (at[index] == line.size() || line[at[index]].time > first.time))
                isWhole = false;
        }
        if (!isWhole)
            continue;
        double sum = 0;
        for (std::size_t index = 0; index < lines.size(); ++index) {
            if (lines[index].empty())
                continue;
            Point point = lines[index][at[index]];
            sum += point.value;
            point.value = sum;
            result[index].push_back(point);
        }
    }
    return result;
}

/// Those of `times` from `since` to `until`, in order, each once.
std::vector<double> timesWithin(double since, double until, std::vector<double> times);

/// The point at a time, give or take a millisecond; null without one.
const TimedValue* pointAt(std::span<const TimedValue> points, double time);

/// The point whose stretch holds a time, its end left out; null without one.
const HistoryPoint* pointAt(std::span<const HistoryPoint> points, double time);

/// Of times in order, the one nearest to `time`; absent without any.
std::optional<double> nearest(std::span<const double> times, double time);

/// The one `steps` ahead of `time` (back when negative), staying at the ends; absent without any.
std::optional<double> stepped(std::span<const double> times, double time, int steps);

} // namespace ChartShape

} // namespace ostrivane
