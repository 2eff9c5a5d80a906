#pragma once

#include "app/widgets/ChartData.hpp"
#include "core/history/SystemRow.hpp"

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace ostrivane {

/// What a row tells of one figure; absent where it tells nothing. A member of `SystemRow` will do.
using RowFigure = std::function<std::optional<double>(const SystemRow&)>;

/// A figure over time, in the order of the rows. A row without it, or with one that is no number, leaves no point.
/// @param peak  the greatest of the figure within a row; empty where the history keeps none
std::vector<HistoryPoint> historyPoints(std::span<const SystemRow> rows, const RowFigure& value,
                                        const RowFigure& peak = {});

/// The greatest of a figure; absent when no row has it.
std::optional<double> greatest(std::span<const SystemRow> rows, const RowFigure& value);

} // namespace ostrivane
