#include "cli/Wording.hpp"

#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace ostrivane::cli {

namespace {

constexpr int nameColumns = 12;

} // namespace

std::string clipped(std::string_view text, std::optional<int> width) {
    return width ? Text::fitted(text, *width) : std::string(text);
}

std::vector<std::string> wrapped(std::string_view text, std::string_view margin, std::optional<int> width) {
    if (width) // in a window as narrow as the margin, the margin gives way
        margin = margin.substr(0, static_cast<std::size_t>(std::max(*width - 1, 0)));
    const auto room = width ? std::optional(*width - static_cast<int>(margin.size())) : std::nullopt;
    std::vector<std::string> lines;
    std::string line;
    const auto end = [&] {
        if (!line.empty())
            lines.push_back(std::string(margin) + clipped(std::exchange(line, {}), room));
    };
    for (const std::string_view word : Text::words(text)) {
        if (room && Text::columns(line) + 1 + Text::columns(word) > *room)
            end();
        line += (line.empty() ? "" : " ") + std::string(word);
    }
    end();
    return lines;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    return text;
}

std::string fact(std::string_view name, std::string_view value, std::optional<int> width) {
    return clipped(fmt::format("{:<{}}{}", name, nameColumns, value), width) + "\n";
}

std::string longFact(std::string_view name, std::string_view value, std::optional<int> width) {
    if (!value.empty() && width && *width < 2 * nameColumns)
        return fact(name, value, width);
    std::vector<std::string> lines = wrapped(value, std::string(nameColumns, ' '), width);
    if (!lines.empty())
        lines.front().replace(0, nameColumns, fmt::format("{:<{}}", name, nameColumns));
    return joined(lines);
}

} // namespace ostrivane::cli
