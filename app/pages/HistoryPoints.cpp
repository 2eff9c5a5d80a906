#include "app/pages/HistoryPoints.hpp"

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

std::optional<double> number(const RowFigure& figure, const SystemRow& row) {
    const std::optional<double> value = figure ? figure(row) : std::nullopt;
    return value && std::isfinite(*value) ? value : std::nullopt;
}

} // namespace

std::vector<HistoryPoint> historyPoints(std::span<const SystemRow> rows, const RowFigure& value,
                                        const RowFigure& peak) {
    std::vector<HistoryPoint> points;
    points.reserve(rows.size());
    for (const SystemRow& row : rows)
        if (const std::optional<double> mean = number(value, row))
            points.push_back({.time = row.date().seconds,
                              .length = static_cast<double>(row.res),
                              .value = *mean,
                              .peak = number(peak, row)});
    return points;
}

std::optional<double> greatest(std::span<const SystemRow> rows, const RowFigure& value) {
    std::optional<double> most;
    for (const SystemRow& row : rows)
        if (const std::optional<double> mean = number(value, row))
            most = std::max(most.value_or(*mean), *mean);
    return most;
}

} // namespace ostrivane
