#include "cli/StyledText.hpp"

#include "core/model/Text.hpp"

#include <algorithm>
#include <utility>

namespace ostrivane::cli {

int columns(const StyledLine& line) {
    int sum = 0;
    for (const Span& span : line)
        sum += Text::columns(span.text);
    return sum;
}

std::string plainText(const StyledLine& line) {
    std::string text;
    for (const Span& span : line)
        text += span.text;
    return text;
}

std::string leftAligned(std::string_view text, int width) {
    std::string out = Text::fitted(text, width);
    out.append(static_cast<std::size_t>(std::max(0, width - Text::columns(out))), ' ');
    return out;
}

std::string rightAligned(std::string_view text, int width) {
    const int gap = std::max(0, width - Text::columns(text));
    return std::string(static_cast<std::size_t>(gap), ' ') + std::string(text);
}

StyledLine spread(Span left, Span right, int width) {
    left.text = Text::fitted(left.text, std::max(width - Text::columns(right.text) - 1, 1));
    const int gap = width - Text::columns(left.text) - Text::columns(right.text);
    return {std::move(left), {std::string(static_cast<std::size_t>(std::max(gap, 1)), ' ')}, std::move(right)};
}

StyledLine labelled(std::string_view label, StyledLine rest) {
    rest.insert(rest.begin(), Span{leftAligned(label, labelColumns), Style::bold});
    return rest;
}

StyledLine fitted(const StyledLine& line, int width) {
    StyledLine out;
    for (const Span& span : line) {
        const int size = Text::columns(span.text);
        if (size > width) {
            if (width > 0)
                out.push_back({Text::fitted(span.text, width), span.style});
            return out;
        }
        out.push_back(span);
        width -= size;
    }
    return out;
}

} // namespace ostrivane::cli
