#pragma once

#include "cli/Plot.hpp"
#include "core/history/AppRow.hpp"
#include "core/history/SystemRow.hpp"

#include <vector>

/// Rows of the history as figures to draw: traffic as bytes per second, without what the rows have no value of.
namespace ostrivane::cli {

std::vector<Figure> machineFigures(const std::vector<SystemRow>& rows);
std::vector<Figure> applicationFigures(const std::vector<AppRow>& rows);

} // namespace ostrivane::cli
