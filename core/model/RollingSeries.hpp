#pragma once

#include "core/model/TimedValue.hpp"

#include <optional>
#include <vector>

namespace ostrivane {

/// The recent past of one figure, bounded in age and, with a spacing, in density. All times are seconds of one clock.
class RollingSeries {
public:
    /// Keeps points for `maxAge` seconds. Samples closer than `spacing` seconds to the last point are averaged into it;
    /// zero or less stores every sample.
    RollingSeries(double maxAge, double spacing) : age(maxAge), gap(spacing) {}

    /// Adds a sample. With a spacing this allocates nothing once the series spans `maxAge`.
    void append(double value, double time);

    /// The points that are at most `seconds` older than `now`, oldest first; later ones than `now` are included.
    std::vector<TimedValue> window(double seconds, double now) const;

    /// Mean of the window's points, each of the same weight; absent when there is none.
    std::optional<double> mean(double seconds, double now) const;

    /// Seconds from the window's first point to its last: how much data stands behind a mean. 0 for less than 2 points.
    double coverage(double seconds, double now) const;

    /// Value of the last point; absent when there is none.
    std::optional<double> latest() const;

    /// Oldest first. A point carries the time of its first sample.
    const std::vector<TimedValue>& points() const { return stored; }
    double maxAge() const { return age; }
    double spacing() const { return gap; }

private:
    bool joinsLast(double time) const;
    void dropBefore(double cutoff);

    std::vector<TimedValue> stored;
    double age;
    double gap;
    double pendingCount = 1; ///< samples averaged into the last point
};

} // namespace ostrivane
