#pragma once

#include "app/widgets/Theme.hpp"
#include "core/model/TimedValue.hpp"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace ostrivane {

/// One line of a live chart.
struct ChartLine {
    Series series = Series::s1;
    QString name;
    std::vector<TimedValue> points;      ///< oldest first
    bool isDashed = false;               ///< a second line: dashed, and without an area
    std::function<QString(double)> text; ///< a value in words, for the read-out
};

/// A point of the history: a mean over `length` seconds that begin at `time`.
struct HistoryPoint {
    double time = 0;
    double length = 60;
    double value = 0;
    std::optional<double> peak{};

    friend bool operator==(const HistoryPoint&, const HistoryPoint&) = default;
};

/// One line of a chart of the past.
struct HistoryLine {
    Series series = Series::s1;
    QString name;
    std::vector<HistoryPoint> points;
    bool isDashed = false;
    std::function<QString(double)> text;
};

/// Whether two lines look alike; how their values read is not compared.
template <class Line>
bool looksLike(const Line& one, const Line& other) {
    return one.series == other.series && one.name == other.name && one.isDashed == other.isDashed &&
           one.points == other.points;
}

/// A stretch of time that stands out, with its name: a session.
struct ChartBand {
    double from = 0;
    double to = 0;
    QString name;

    friend bool operator==(const ChartBand&, const ChartBand&) = default;
};

struct ChartThreshold {
    double value = 0;
    QString caption;

    friend bool operator==(const ChartThreshold&, const ChartThreshold&) = default;
};

} // namespace ostrivane
