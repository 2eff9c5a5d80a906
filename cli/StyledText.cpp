#include "cli/StyledText.hpp"

#include "core/model/Text.hpp"

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
