#include "app/widgets/ChartShape.hpp"

#include <cmath>

namespace ostrivane::ChartShape {

namespace {

constexpr double gapFactor = 2.5;
constexpr double slowestInterval = 30; // seconds, the longest that can be chosen

/// Begins a new piece where `breaks`, and leaves out what has no value.
template <class Value>
std::vector<Run> runsOf(std::span<const HistoryPoint> points, Value value) {
    std::vector<Run> runs;
    const HistoryPoint* last = nullptr;
    const auto close = [&] {
        if (last)
            runs.back().push_back({last->time + last->length, runs.back().back().value});
        last = nullptr;
    };
    for (const HistoryPoint& point : points) {
        const std::optional<double> held = value(point);
        if (!held) {
            close();
            continue;
        }
        if (last && point.time - last->time > gapFactor * std::max(point.length, last->length))
            close();
        if (!last)
            runs.push_back({{point.time, *held}});
        runs.back().push_back({middle(point), *held});
        last = &point;
    }
    close();
    return runs;
}

} // namespace

std::vector<Run> liveRuns(std::span<const TimedValue> points) {
    std::vector<Run> runs;
    const auto step = [&](std::size_t at) { // up to the point at `at`
        return at > 0 && at < points.size() ? points[at].time - points[at - 1].time : 0;
    };
    for (std::size_t at = 0; at < points.size(); ++at) {
        const double usual = std::max({slowestInterval, step(at - 1), step(at + 1)});
        if (at == 0 || step(at) > gapFactor * usual)
            runs.emplace_back();
        runs.back().push_back(points[at]);
    }
    return runs;
}

std::vector<Run> historyRuns(std::span<const HistoryPoint> points) {
    return runsOf(points, [](const HistoryPoint& point) { return std::optional(point.value); });
}

std::vector<Run> peakRuns(std::span<const HistoryPoint> points) {
    return runsOf(points, [](const HistoryPoint& point) { return point.peak; });
}

Run thinned(std::span<const TimedValue> run, double since, double until, double width) {
    const auto from = std::ranges::lower_bound(run, since, {}, &TimedValue::time);
    const auto to = std::ranges::upper_bound(run, until, {}, &TimedValue::time);
    const auto first = from == run.begin() ? from : std::prev(from);
    const auto end = to == run.end() ? to : std::next(to);
    Run result;
    const auto column = [&](const TimedValue& point) { return std::floor((point.time - since) / width); };
    for (auto at = first; at != end;) {
        const double here = column(*at);
        const auto next = std::find_if(at, end, [&](const TimedValue& point) { return column(point) != here; });
        if (next - at <= 2) {
            result.insert(result.end(), at, next);
        } else {
            const auto [least, greatest] = std::minmax_element(
                at, next, [](const TimedValue& one, const TimedValue& other) { return one.value < other.value; });
            result.push_back(*std::min(least, greatest));
            if (least != greatest)
                result.push_back(*std::max(least, greatest));
        }
        at = next;
    }
    return result;
}

std::vector<double> timesWithin(double since, double until, std::vector<double> times) {
    std::erase_if(times, [&](double time) { return time < since || time > until; });
    std::ranges::sort(times);
    times.erase(std::unique(times.begin(), times.end()), times.end());
    return times;
}

const TimedValue* pointAt(std::span<const TimedValue> points, double time) {
    constexpr double same = 1e-3;
    const auto found = std::ranges::lower_bound(points, time - same, {}, &TimedValue::time);
    return found != points.end() && found->time <= time + same ? &*found : nullptr;
}

const HistoryPoint* pointAt(std::span<const HistoryPoint> points, double time) {
    const auto after = std::ranges::upper_bound(points, time, {}, &HistoryPoint::time);
    if (after == points.begin())
        return nullptr;
    const HistoryPoint& point = *std::prev(after);
    return time < point.time + point.length ? &point : nullptr;
}

std::optional<double> nearest(std::span<const double> times, double time) {
    if (times.empty())
        return std::nullopt;
    const auto after = std::ranges::lower_bound(times, time);
    if (after == times.end())
        return times.back();
    if (after == times.begin())
        return times.front();
    return time - *std::prev(after) <= *after - time ? *std::prev(after) : *after;
}

std::optional<double> stepped(std::span<const double> times, double time, int steps) {
    const std::optional<double> here = nearest(times, time);
    if (!here)
        return std::nullopt;
    const auto at = std::ranges::lower_bound(times, *here) - times.begin();
    const auto last = static_cast<std::ptrdiff_t>(times.size()) - 1;
    return times[static_cast<std::size_t>(std::clamp(at + steps, std::ptrdiff_t{0}, last))];
}

} // namespace ostrivane::ChartShape
