#include "cli/Plot.hpp"

#include "cli/Bar.hpp"
#include "cli/StyledText.hpp"
#include "core/model/Text.hpp"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <span>

namespace ostrivane::cli {

namespace {

constexpr int marginColumns = 12; ///< words of the axis, a blank and the axis
constexpr int titleColumns = 12;
constexpr std::array<std::string_view, 3> asciiHeights{".", ":", "#"};

struct AxisGlyphs {
    std::string_view mark, line, corner, rule, tick;
};
constexpr AxisGlyphs boxAxis{"┤", "│", "└", "─", "┬"};
constexpr AxisGlyphs asciiAxis{"|", "|", "+", "-", "+"};

const AxisGlyphs& axisOf(Glyphs glyphs) {
    return glyphs == Glyphs::blocks ? boxAxis : asciiAxis;
}

std::span<const std::string_view> heightsOf(Glyphs glyphs) {
    if (glyphs == Glyphs::blocks)
        return Bar::heights;
    return asciiHeights;
}

int drawnColumns(int width) {
    return std::max(width - marginColumns, 1);
}

/// The first round number that is no smaller.
double roundTop(double value, bool isInBinary) {
    if (isInBinary)
        return std::exp2(std::ceil(std::log2(value)));
    const double power = std::pow(10, std::floor(std::log10(value)));
    for (const double step : {1.0, 2.0, 5.0})
        if (value <= step * power * (1 + 1e-9)) // 0.2 is not quite twice 0.1
            return step * power;
    return 10 * power;
}

double topOf(const Figure& figure, const std::vector<std::optional<double>>& values) {
    double highest = figure.leastTop;
    for (const auto& value : values)
        highest = std::max(highest, value.value_or(0));
    return roundTop(highest, figure.isInBinary);
}

std::string drawnLine(const std::vector<std::optional<double>>& values, double top, int below, int height,
                      Glyphs glyphs) {
    const auto heights = heightsOf(glyphs);
    const int steps = static_cast<int>(heights.size());
    std::string line;
    for (const auto& value : values) {
        int filled = 0;
        if (value) {
            const double share = std::clamp(*value / top, 0.0, 1.0);
            filled = std::max(static_cast<int>(std::lround(share * height * steps)), 1) - below * steps;
        }
        line += filled > 0 ? heights[static_cast<std::size_t>(std::min(filled, steps) - 1)] : " ";
    }
    return line;
}

/// The clock on the wall at that instant, as seconds since 1970 on that clock.
double wallSeconds(double instant) {
    const auto seconds = static_cast<std::time_t>(instant);
    std::tm local{};
    return localtime_r(&seconds, &local) ? instant + static_cast<double>(local.tm_gmtoff) : instant;
}

constexpr double day = 86400;
constexpr int wordColumns = 5; ///< "16:00" or "11-21"

/// The time, and at midnight the day that begins.
std::string tickWords(double wall) {
    const auto seconds = static_cast<std::time_t>(wall);
    std::tm clock{};
    if (!gmtime_r(&seconds, &clock))
        return {};
    return std::fmod(wall, day) != 0 ? fmt::format("{:%H:%M}", clock) : fmt::format("{:%m-%d}", clock);
}

/// Seconds from tick to tick, so that the words have room.
double tickStep(const Period& period, int columns) {
    constexpr std::array<double, 13> steps{300,   600,   900, 1800,    3600,    7200,    10800,
                                           21600, 43200, day, 2 * day, 4 * day, 16 * day};
    constexpr int room = wordColumns + 3;
    for (const double step : steps)
        if (step / period.seconds() * columns >= room)
            return step;
    return steps.back();
}

} // namespace

Glyphs glyphsOf(std::string_view lcAll, std::string_view lcCtype, std::string_view lang) {
    const std::string_view named = !lcAll.empty() ? lcAll : !lcCtype.empty() ? lcCtype : lang;
    const std::string locale = Text::lowered(std::string(named));
    const bool isUnicode = locale.find("utf-8") != std::string::npos || locale.find("utf8") != std::string::npos;
    return isUnicode ? Glyphs::blocks : Glyphs::ascii;
}

std::vector<std::string> plotLines(const Figure& figure, const Period& period, int width, Glyphs glyphs) {
    const auto found = extremes(figure.pieces, period);
    if (!found)
        return {};
    const auto values = means(figure.pieces, period, drawnColumns(width));
    const double top = topOf(figure, values);
    const AxisGlyphs& axis = axisOf(glyphs);
    std::vector<std::string> lines{fmt::format("{}mean {}, lowest {}, highest {}",
                                               leftAligned(figure.title, titleColumns), figure.words(found->mean),
                                               figure.words(found->lowest), figure.words(found->highest))};
    for (int below = figure.height - 1; below >= 0; --below) {
        const bool isTop = below == figure.height - 1;
        const std::string words = isTop ? figure.words(top) : below == 0 ? figure.words(0) : "";
        lines.push_back(fmt::format("{} {}{}", rightAligned(words, marginColumns - 2),
                                    isTop || below == 0 ? axis.mark : axis.line,
                                    drawnLine(values, top, below, figure.height, glyphs)));
    }
    for (std::string& line : lines)
        line = Text::fitted(line, width);
    return lines;
}

std::vector<std::string> timeAxis(const Period& period, int width, Glyphs glyphs) {
    const AxisGlyphs& axis = axisOf(glyphs);
    const int columns = drawnColumns(width);
    const double step = tickStep(period, columns);
    const auto stepsAt = [&](int column) {
        return std::floor(wallSeconds(period.start.seconds + period.seconds() * column / columns) / step);
    };
    std::string rule = rightAligned(axis.corner, marginColumns);
    std::string words(marginColumns, ' ');
    for (int column = 0; column < columns; ++column) {
        // A tick stands in the column within which its time comes.
        const double passed = stepsAt(column + 1);
        const bool isTick = passed > stepsAt(column);
        rule += isTick ? axis.tick : axis.rule;
        const int from = marginColumns + column - wordColumns / 2;
        if (isTick && from > static_cast<int>(words.size()) && from + wordColumns <= marginColumns + columns) {
            words.append(static_cast<std::size_t>(from) - words.size(), ' ');
            words += tickWords(passed * step);
        }
    }
    return {Text::fitted(rule, width), Text::fitted(words, width)};
}

} // namespace ostrivane::cli
