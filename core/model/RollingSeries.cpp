#include "core/model/RollingSeries.hpp"

#include <cstddef>

namespace ostrivane {

namespace {

/// Calls `take` for each point of the window. Looks at every point: a clock that stepped back leaves them out of order.
template <class Take>
void eachInWindow(const std::vector<TimedValue>& points, double seconds, double now, Take take) {
    const double from = now - seconds;
    for (const TimedValue& point : points)
        if (from <= point.time)
            take(point);
}

} // namespace

void RollingSeries::append(double value, double time) {
    if (joinsLast(time)) {
        TimedValue& last = stored.back();
        last.value = (value + last.value * pendingCount) / (pendingCount + 1);
        pendingCount += 1;
    } else {
        stored.push_back({time, value});
        pendingCount = 1;
    }
    dropBefore(time - age);
}

std::vector<TimedValue> RollingSeries::window(double seconds, double now) const {
    std::vector<TimedValue> found;
    found.reserve(stored.size());
    eachInWindow(stored, seconds, now, [&](const TimedValue& point) { found.push_back(point); });
    return found;
}

std::optional<double> RollingSeries::mean(double seconds, double now) const {
    double sum = 0;
    std::size_t count = 0;
    eachInWindow(stored, seconds, now, [&](const TimedValue& point) {
        sum += point.value;
        ++count;
    });
    return count == 0 ? std::nullopt : std::optional(sum / static_cast<double>(count));
}

double RollingSeries::coverage(double seconds, double now) const {
    std::optional<double> first;
    double last = 0;
    eachInWindow(stored, seconds, now, [&](const TimedValue& point) {
        first = first.value_or(point.time);
        last = point.time;
    });
    return first ? last - *first : 0;
}

std::optional<double> RollingSeries::latest() const {
    return stored.empty() ? std::nullopt : std::optional(stored.back().value);
}

bool RollingSeries::joinsLast(double time) const {
    return gap > 0 && !stored.empty() && time - stored.back().time < gap;
}

void RollingSeries::dropBefore(double cutoff) {
    if (!stored.empty() && stored.front().time < cutoff)
        std::erase_if(stored, [cutoff](const TimedValue& point) { return point.time < cutoff; });
}

} // namespace ostrivane
