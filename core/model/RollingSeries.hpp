#pragma once

#include "core/model/TimedValue.hpp"

#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <vector>

namespace ostrivane {

/// The recent past of one figure, bounded in age and, with a spacing, in density. All times are seconds of one clock.
class RollingSeries {
public:
    /// Keeps points for `maxAge` seconds. Samples closer than `spacing` seconds to the last point are averaged into it;
    /// zero or less stores every sample.
    RollingSeries(double maxAge, double spacing) : age(maxAge), gap(spacing) {}

    /// Adds a sample; one that is not finite is none. With a spacing this allocates nothing once the series spans
    /// `maxAge`.
    void append(double value, double time);

    /// The points that are at most `seconds` older than `now`, oldest first; later ones than `now` are included.
    std::vector<TimedValue> window(double seconds, double now) const;

    /// The same points without a copy, found without looking at each; valid until the next sample. For a series with a
    /// spacing, whose points are in the order of time whatever the clock did.
    std::span<const TimedValue> recent(double seconds, double now) const;

    /// Mean of the window's points, each of the same weight; absent when there is none.
    std::optional<double> mean(double seconds, double now) const;

    /// Seconds from the window's first point to its last: how much data stands behind a mean. 0 for less than 2 points.
    double coverage(double seconds, double now) const;

    /// Value of the last point; absent when there is none.
    std::optional<double> latest() const;

    /// No point is higher. Falls some time after the highest point has grown old. Tells at once of a quiet series that
    /// no mean of it reaches a mark.
    double ceiling() const { return highest; }

    /// Oldest first. A point carries the time of its first sample.
    std::span<const TimedValue> points() const { return std::span(stored).subspan(dropped); }
    double maxAge() const { return age; }
    double spacing() const { return gap; }

private:
    bool keepsOrder() const { return gap > 0; }
    bool joinsLast(double time) const;
    void dropBefore(double cutoff);

    std::vector<TimedValue> stored;
    std::size_t dropped = 0; ///< points at the front of `stored` that are too old and still take room
    double highest = -std::numeric_limits<double>::infinity();
    double age;
    double gap;
    double pendingCount = 1; ///< samples averaged into the last point
};

} // namespace ostrivane
