#pragma once

#include <string>
#include <vector>

namespace ostrivane::cli {

/// How a piece of text stands out. Never the only bearer of a meaning: the words say it too.
enum class Style { plain, dim, bold, accent, good, warning, critical };

struct Span {
    std::string text; ///< valid UTF-8 without control characters
    Style style = Style::plain;
};

using StyledLine = std::vector<Span>;

/// Columns that the line takes.
int columns(const StyledLine& line);

/// The line without its styles.
std::string plainText(const StyledLine& line);

/// The line cut to at most `width` columns.
StyledLine fitted(const StyledLine& line, int width);

} // namespace ostrivane::cli
