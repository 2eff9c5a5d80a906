#pragma once

#include "cli/StyledText.hpp"

#include <array>
#include <cstddef>
#include <string_view>

/// Bars of block characters.
namespace ostrivane::cli::Bar {

/// A character filled from below, an eighth more each.
inline constexpr std::array<std::string_view, 8> heights{"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};

/// A load of 0 to 1 as a bar of `width` columns, exact to an eighth of a column.
StyledLine load(double fraction, int width);

/// A load of 0 to 1 as one character.
Span mark(double fraction);

/// Parts of a whole, side by side, each with a shading of its own; together at most `width` columns.
StyledLine parts(const std::vector<double>& fractions, int width);

/// The shading of the part with that index, for a legend.
Span partMark(std::size_t index);

} // namespace ostrivane::cli::Bar
