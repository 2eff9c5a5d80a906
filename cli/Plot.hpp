#pragma once

#include "cli/Timeline.hpp"

#include <string>
#include <string_view>
#include <vector>

/// Figures over time, drawn with characters. A time of which nothing is known stays blank; a known 0 does not.
namespace ostrivane::cli {

/// The characters that a terminal can show.
enum class Glyphs { blocks, ascii };

/// By the first of these variables of the environment that is set: LC_ALL, LC_CTYPE, LANG.
Glyphs glyphsOf(std::string_view lcAll, std::string_view lcCtype, std::string_view lang);

/// A figure, its words, and how its axis is divided.
struct Figure {
    std::string_view title;
    std::string (*words)(double value);
    double leastTop = 1;     ///< the axis reaches at least this high
    bool isInBinary = false; ///< the top of the axis is a power of two; else 1, 2 or 5 and zeros
    int height = 2;          ///< lines of the drawing
    std::vector<Piece> pieces;
};

/// Its title with mean, lowest and highest, and below the drawing. Empty when no piece lies within `period`.
std::vector<std::string> plotLines(const Figure& figure, const Period& period, int width, Glyphs glyphs);

/// The time below such drawings, in the user's time zone.
std::vector<std::string> timeAxis(const Period& period, int width, Glyphs glyphs);

} // namespace ostrivane::cli
