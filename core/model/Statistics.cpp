#include "core/model/Statistics.hpp"

#include <algorithm>
#include <cmath>

namespace ostrivane::Statistics {

std::optional<double> mean(std::span<const TimedValue> points) {
    if (points.empty())
        return std::nullopt;
    double sum = 0;
    for (const TimedValue& point : points)
        sum += point.value;
    return sum / static_cast<double>(points.size());
}

double timeSpan(std::span<const TimedValue> points) {
    return points.empty() ? 0 : points.back().time - points.front().time;
}

std::optional<MeanAndStdDev> meanAndStdDev(std::span<const double> values) {
    if (values.size() < 2)
        return std::nullopt;
    const auto n = static_cast<double>(values.size());
    double sum = 0;
    for (const double value : values)
        sum += value;
    const double mean = sum / n;
    double squares = 0;
    for (const double value : values)
        squares += (value - mean) * (value - mean);
    return MeanAndStdDev{mean, std::sqrt(squares / (n - 1))};
}

std::optional<Fit> linearFit(std::span<const TimedValue> points) {
    if (points.size() < 3)
        return std::nullopt;
    // Times count from the first point: as seconds since 1970 their squares would swallow the differences.
    const double start = points.front().time;
    const auto n = static_cast<double>(points.size());
    double sumX = 0;
    double sumY = 0;
    for (const TimedValue& point : points) {
        sumX += point.time - start;
        sumY += point.value;
    }
    const double meanX = sumX / n;
    const double meanY = sumY / n;
    double sxy = 0;
    double sxx = 0;
    double syy = 0;
    for (const TimedValue& point : points) {
        const double dx = point.time - start - meanX;
        const double dy = point.value - meanY;
        sxy += dx * dy;
        sxx += dx * dx;
        syy += dy * dy;
    }
    if (!(sxx > 0))
        return std::nullopt;
    const double slope = sxy / sxx;
    const double r2 = syy > 0 ? std::min(sxy * sxy / (sxx * syy), 1.0) : 0; // rounding may carry it past 1
    return Fit{slope, meanY - slope * meanX, r2};
}

} // namespace ostrivane::Statistics
