#include "core/model/RollingSeries.hpp"

#include "core/model/Statistics.hpp"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <iterator>

namespace ostrivane {

void RollingSeries::append(double value, double time) {
    if (!std::isfinite(value) || !std::isfinite(time))
        return;
    if (joinsLast(time)) {
        TimedValue& last = stored.back();
        last.value = (value + last.value * pendingCount) / (pendingCount + 1);
        pendingCount += 1;
    } else {
        stored.push_back({time, value});
        pendingCount = 1;
    }
    highest = std::max(highest, stored.back().value);
    dropBefore(time - age);
}

std::vector<TimedValue> RollingSeries::window(double seconds, double now) const {
    const double from = now - seconds;
    std::vector<TimedValue> found;
    found.reserve(points().size());
    std::ranges::copy_if(points(), std::back_inserter(found),
                         [from](const TimedValue& point) { return from <= point.time; });
    return found;
}

std::span<const TimedValue> RollingSeries::recent(double seconds, double now) const {
    assert(keepsOrder());
    const double from = now - seconds;
    const auto all = points();
    const auto start = std::ranges::partition_point(
        all, [from](double time) { return !(from <= time); }, &TimedValue::time);
    return {start, all.end()};
}

std::optional<double> RollingSeries::mean(double seconds, double now) const {
    return keepsOrder() ? Statistics::mean(recent(seconds, now)) : Statistics::mean(window(seconds, now));
}

double RollingSeries::coverage(double seconds, double now) const {
    return keepsOrder() ? Statistics::timeSpan(recent(seconds, now)) : Statistics::timeSpan(window(seconds, now));
}

std::optional<double> RollingSeries::latest() const {
    return points().empty() ? std::nullopt : std::optional(stored.back().value);
}

bool RollingSeries::joinsLast(double time) const {
    return gap > 0 && !points().empty() && time - stored.back().time < gap;
}

void RollingSeries::dropBefore(double cutoff) {
    const auto isOld = [cutoff](const TimedValue& point) { return point.time < cutoff; };
    if (points().empty() || !isOld(points().front()))
        return;
    while (dropped < stored.size() && isOld(stored[dropped]))
        ++dropped;
    if (!keepsOrder())
        stored.erase(std::remove_if(stored.begin() + static_cast<std::ptrdiff_t>(dropped), stored.end(), isOld),
                     stored.end());
    // Moving all points for each one that grows old would be most of the work of a series.
    if (dropped > stored.size() / 8) {
        stored.erase(stored.begin(), stored.begin() + static_cast<std::ptrdiff_t>(dropped));
        dropped = 0;
        highest = -std::numeric_limits<double>::infinity();
        for (const TimedValue& point : stored)
            highest = std::max(highest, point.value);
    }
}

} // namespace ostrivane
