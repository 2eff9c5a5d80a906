#pragma once

#include "core/model/TimedValue.hpp"

#include <optional>
#include <span>

namespace ostrivane::Statistics {

/// Mean of the values, each point of the same weight; absent when there is none.
std::optional<double> mean(std::span<const TimedValue> points);

/// Seconds from the first point to the last; 0 for less than 2 points.
double timeSpan(std::span<const TimedValue> points);

struct MeanAndStdDev {
    double mean = 0;
    double sd = 0; ///< of the sample: divided by one less than the count
};

/// Absent for fewer than 2 values.
std::optional<MeanAndStdDev> meanAndStdDev(std::span<const double> values);

/// A straight line through points, by least squares.
struct Fit {
    double slope = 0;     ///< units of value per second
    double intercept = 0; ///< at the time of the first point, where the fit's time axis begins
    double r2 = 0;        ///< how much of the variation the line explains, 0 to 1; 0 for a flat line
};

/// Absent for fewer than 3 points, and when all stand at one time.
std::optional<Fit> linearFit(std::span<const TimedValue> points);

} // namespace ostrivane::Statistics
