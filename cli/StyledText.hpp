#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ostrivane::cli {

/// How a piece of text stands out. Never the only bearer of a meaning: the words say it too.
enum class Style { plain, dim, bold, accent, good, warning, critical, selected };

struct Span {
    std::string text; ///< valid UTF-8 without control characters
    Style style = Style::plain;
};

using StyledLine = std::vector<Span>;

/// Columns that the line takes.
int columns(const StyledLine& line);

/// The line without its styles.
std::string plainText(const StyledLine& line);

/// `text` in exactly `width` columns, cut where it is longer.
std::string leftAligned(std::string_view text, int width);

/// `text` at the end of at least `width` columns.
std::string rightAligned(std::string_view text, int width);

/// `left` and `right` at the two ends of `width` columns; `left` gives way.
StyledLine spread(Span left, Span right, int width);

/// `rest` behind a bold label that takes `labelColumns`.
inline constexpr int labelColumns = 10;
StyledLine labelled(std::string_view label, StyledLine rest);

/// The line cut to at most `width` columns.
StyledLine fitted(const StyledLine& line, int width);

} // namespace ostrivane::cli
