#include "app/widgets/ChartAxis.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace ostrivane {

namespace {

constexpr double lowShare = 0.4;
constexpr double patience = 30; // seconds
constexpr double coldest = 30;  // degrees Celsius
constexpr double hottest = 100;

/// The least of `steps` times `unit` at or above `value`. A hair above a step is that step: sums of fractions seldom
/// meet it exactly.
template <std::size_t Count>
double nextStep(double value, double unit, const std::array<double, Count>& steps) {
    for (const double step : steps) {
        if (value <= step * unit * (1 + 1e-9))
            return step * unit;
    }
    return steps.back() * unit;
}

} // namespace

double lowerEnd(const ChartAxis& axis) {
    return axis.kind == ChartAxis::Kind::temperature ? coldest : 0;
}

double AxisScale::nice(double value, bool binary) {
    if (!(value > 1))
        return 1;
    if (!std::isfinite(value))
        return value;
    if (!binary)
        return nextStep(value, std::pow(10.0, std::floor(std::log10(value))), std::array{1.0, 2.0, 5.0, 10.0});
    double unit = 1;
    while (unit * 1024 <= value)
        unit *= 1024;
    return nextStep(value, unit, std::array{1.0, 2.0, 5.0, 10.0, 20.0, 50.0, 100.0, 200.0, 512.0, 1024.0});
}

double AxisScale::fit(const ChartAxis& axis, double largest) {
    switch (axis.kind) {
    case ChartAxis::Kind::percent:
        return 1;
    case ChartAxis::Kind::fixed:
        return axis.most > 0 ? axis.most : 1;
    case ChartAxis::Kind::temperature:
        return std::max(hottest, std::ceil(largest / 10) * 10);
    case ChartAxis::Kind::cores:
        return std::max(1.0, std::ceil(largest - 1e-9));
    case ChartAxis::Kind::open:
        return nice(largest, axis.binary);
    }
    return 1;
}

double AxisScale::top(const ChartAxis& axis, double largest, double now) {
    const double wanted = fit(axis, largest);
    if (axis.kind != ChartAxis::Kind::open && axis.kind != ChartAxis::Kind::cores)
        return wanted;
    const bool isLow = wanted < current && largest < lowShare * current;
    if (isLow && (lowSince < 0 || now < lowSince)) // or the clock was set back
        lowSince = now;
    if (wanted >= current || (isLow && now - lowSince >= patience))
        current = wanted;
    if (!isLow || current == wanted)
        lowSince = -1;
    return current;
}

} // namespace ostrivane
