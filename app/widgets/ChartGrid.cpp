#include "app/widgets/ChartGrid.hpp"

#include "app/widgets/ChartText.hpp"

#include <QDateTime>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace ostrivane {

namespace {

constexpr double minute = 60;
constexpr double hour = 3600;
constexpr double day = 86400;

QString labelOf(const ChartAxis& axis, double value) {
    return axis.label ? axis.label(value) : QString();
}

/// The least step that divides `count` into three parts or more and `most` at most; where none does, the least that
/// makes no more than `most`.
double stepOf(double count, int most, std::span<const double> steps) {
    const auto parts = [&](double step) { return count / step; };
    for (const double step : steps) {
        if (parts(step) <= most && parts(step) >= 3 && parts(step) == std::floor(parts(step)))
            return step;
    }
    for (const double step : steps) {
        if (parts(step) <= most)
            return step;
    }
    return count;
}

struct Unit {
    double seconds;
    QString name;
};

Unit unitOf(double window) {
    if (window <= 2 * minute)
        return {1, QStringLiteral("s")};
    if (window <= hour)
        return {minute, QStringLiteral("min")};
    if (window <= 2 * day)
        return {hour, QStringLiteral("h")};
    return {day, QStringLiteral("d")};
}

/// Midnights of local days, every `step` days back from the last.
std::vector<GridTime> midnights(double since, double until, int step) {
    std::vector<GridTime> marks;
    const QDate last = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(until)).date();
    for (QDate date = last; date.isValid(); date = date.addDays(-step)) {
        const auto at = static_cast<double>(date.startOfDay().toSecsSinceEpoch());
        if (at < since)
            break;
        marks.push_back({(at - since) / (until - since), ChartText::dayOfMonth(at)});
    }
    std::ranges::reverse(marks);
    return marks;
}

} // namespace

std::vector<GridHeight> axisHeights(const ChartAxis& axis, double top, GridDetail detail) {
    const double bottom = lowerEnd(axis);
    std::vector<GridHeight> heights;
    const auto add = [&](double share, bool labelled) {
        heights.push_back({share, labelled ? labelOf(axis, bottom + share * (top - bottom)) : QString(), share <= 0});
    };
    const bool all = detail == GridDetail::all;
    const bool ends = all || detail == GridDetail::ends;
    add(0, ends);
    if (all)
        add(0.25, false);
    add(0.5, all || detail == GridDetail::middle);
    if (all)
        add(0.75, false);
    add(1, ends);
    return heights;
}

MirrorEnds mirrorEnds(const ChartAxis& axis, double upNeeds, double downNeeds) {
    const auto atLeastQuarter = [&](double own, double other) {
        return own >= other / 3 ? own : AxisScale::nice(other / 3, axis.binary);
    };
    return {atLeastQuarter(upNeeds, downNeeds), atLeastQuarter(downNeeds, upNeeds)};
}

std::vector<GridHeight> mirrorHeights(const ChartAxis& axis, const MirrorEnds& ends, GridDetail detail) {
    const double whole = ends.up + ends.down;
    std::vector<GridHeight> heights;
    const auto add = [&](double value) {
        const QString label = detail == GridDetail::none ? QString() : labelOf(axis, std::abs(value));
        heights.push_back({(value + ends.down) / whole, label, value == 0});
    };
    const auto isTall = [&](double end) { return detail == GridDetail::all && end > 0.4 * whole; };
    add(-ends.down);
    if (isTall(ends.down))
        add(-ends.down / 2);
    add(0);
    if (isTall(ends.up))
        add(ends.up / 2);
    add(ends.up);
    return heights;
}

std::vector<GridTime> spanTimes(double window, const QString& ending, int most) {
    if (!(window > 0))
        return {};
    const Unit unit = unitOf(window);
    const double count = std::max(1.0, std::round(window)) / unit.seconds;
    const double step = stepOf(count, most, std::array{1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 10.0, 15.0, 20.0, 30.0});
    const auto number = [](double value) { return QString::number(std::llround(value)); };
    std::vector<GridTime> times{{0, number(count) + QLatin1Char(' ') + unit.name + ending}};
    for (int steps = static_cast<int>(std::ceil(count / step - 1)); steps > 0; --steps)
        times.push_back({1 - steps * step / count, number(steps * step)});
    times.push_back({1, QStringLiteral("now")});
    return times;
}

std::vector<GridTime> clockTimes(double since, double until, int most) {
    const double span = std::round(until - since); // a difference of two instants is seldom a whole number
    if (!(span > 0))
        return {};
    std::vector<GridTime> times;
    if (span > 2 * day) {
        const double step = stepOf(std::round(span / day), most, std::array{1.0, 2.0, 5.0, 10.0, 15.0, 30.0});
        times = midnights(since, until, std::max(1, static_cast<int>(step)));
    } else {
        const double step = stepOf(span, most,
                                   std::array{minute, 5 * minute, 10 * minute, 15 * minute, 30 * minute, hour, 2 * hour,
                                              3 * hour, 4 * hour, 6 * hour, 12 * hour});
        for (int steps = static_cast<int>(span / step); steps > 0; --steps)
            times.push_back({1 - steps * step / span, ChartText::clock(until - steps * step)});
    }
    times.push_back({1, QStringLiteral("now")});
    return times;
}

} // namespace ostrivane
