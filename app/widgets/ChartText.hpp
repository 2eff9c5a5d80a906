#pragma once

#include "core/model/TimedValue.hpp"

#include <QString>

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace ostrivane {

/// What charts say in words.
namespace ChartText {

/// A line's figures in view; absent without any.
struct Figures {
    double now = 0;
    double lowest = 0;
    double highest = 0;
};

/// Of the points from `since` to `until`, both in their time. The last of them is the one that holds now.
std::optional<Figures> figures(std::span<const TimedValue> points, double since, double until);

/// A line of a chart, for its sentence.
struct Told {
    QString name;
    std::optional<Figures> figures;
    const std::function<QString(double)>& text;
};

/// "CPU, last 5 minutes: now 31%, lowest 12%, highest 58%." Several lines are called by their names; without
/// figures the sentence says that there are none.
/// @param sum  of several lines that lie on top of each other: told ahead of them
QString sentence(const QString& name, const QString& span, std::span<const Told> lines,
                 const std::optional<Figures>& sum = std::nullopt);

/// "last 5 minutes", "last hour", "last 30 days".
QString span(double seconds);

/// A value as a line tells it; empty where the line has no words.
inline QString figure(const std::function<QString(double)>& text, double value) {
    return text ? text(value) : QString();
}

/// What stands for a value that there is none of.
QString none();

/// Local time of instants in seconds since 1970: "14:31:52", "14:31", "14 Nov", "14 Nov, 14:31".
QString clockWithSeconds(double time);
QString clock(double time);
QString dayOfMonth(double time);
QString dayAndClock(double time);

} // namespace ChartText

} // namespace ostrivane
