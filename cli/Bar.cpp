#include "cli/Bar.hpp"

#include <algorithm>
#include <cmath>

namespace ostrivane::cli::Bar {

namespace {

constexpr std::array<std::string_view, 8> eighths{"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
constexpr std::string_view full = "█";
constexpr std::string_view rest = "·";

struct Shading {
    std::string_view glyph;
    Style style;
};
constexpr std::array<Shading, 5> shadings{
    {{"█", Style::accent}, {"▓", Style::warning}, {"▒", Style::critical}, {"░", Style::good}, {"·", Style::dim}}};

std::string repeated(std::string_view glyph, int count) {
    std::string text;
    for (int index = 0; index < count; ++index)
        text += glyph;
    return text;
}

double share(double fraction) {
    return std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0;
}

Style gravity(double fraction) {
    if (fraction < 0.6)
        return Style::good;
    return fraction < 0.85 ? Style::warning : Style::critical;
}

} // namespace

StyledLine load(double fraction, int width) {
    if (width <= 0)
        return {};
    const double part = share(fraction);
    const int filled = static_cast<int>(std::lround(part * width * 8));
    const int whole = filled / 8;
    const int left = width - whole - (filled % 8 > 0 ? 1 : 0);
    return {{repeated(full, whole) + std::string(eighths[static_cast<std::size_t>(filled % 8)]), gravity(part)},
            {repeated(rest, left), Style::dim}};
}

Span mark(double fraction) {
    const double part = share(fraction);
    const auto height = static_cast<std::size_t>(std::lround(part * (heights.size() - 1)));
    return {std::string(heights[height]), gravity(part)};
}

StyledLine parts(const std::vector<double>& fractions, int width) {
    StyledLine line;
    double sum = 0;
    int drawn = 0;
    for (std::size_t index = 0; index < fractions.size(); ++index) {
        // Rounding the running sum keeps the parts' errors from adding up.
        sum = share(sum + share(fractions[index]));
        const int end = static_cast<int>(std::lround(sum * std::max(width, 0)));
        const Shading& shading = shadings[index % shadings.size()];
        line.push_back({repeated(shading.glyph, end - drawn), shading.style});
        drawn = end;
    }
    return line;
}

Span partMark(std::size_t index) {
    const Shading& shading = shadings[index % shadings.size()];
    return {std::string(shading.glyph), shading.style};
}

} // namespace ostrivane::cli::Bar
