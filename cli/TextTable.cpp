#include "cli/TextTable.hpp"

#include "cli/StyledText.hpp"
#include "core/model/Text.hpp"

#include <algorithm>
#include <cstddef>

namespace ostrivane::cli {

namespace {

constexpr int gapColumns = 2;
constexpr int readableName = 18;

std::vector<int> columnWidths(const TextTable& table) {
    std::vector<int> widths;
    for (std::size_t column = 0; column < table.headings.size(); ++column) {
        int widest = Text::columns(table.headings[column]);
        for (const auto& row : table.rows)
            widest = std::max(widest, Text::columns(row[column]));
        widths.push_back(widest);
    }
    return widths;
}

/// Makes the columns fit: the name shrinks to what is readable, then the last columns go, then the name shrinks on.
void fit(std::vector<int>& widths, int width) {
    const int wholeName = widths.front();
    int others = 0;
    for (std::size_t column = 1; column < widths.size(); ++column)
        others += gapColumns + widths[column];
    while (widths.size() > 1 && std::min(wholeName, readableName) + others > width) {
        others -= gapColumns + widths.back();
        widths.pop_back();
    }
    widths.front() = std::max(std::min(wholeName, width - others), 1);
}

std::string line(const std::vector<std::string>& words, const std::vector<int>& widths) {
    std::string text = leftAligned(words.front(), widths.front());
    for (std::size_t column = 1; column < widths.size(); ++column)
        text += rightAligned(words[column], gapColumns + widths[column]);
    return text + "\n";
}

} // namespace

std::string tableText(const TextTable& table, std::optional<int> width) {
    std::vector<int> widths = columnWidths(table);
    if (width)
        fit(widths, *width);
    std::string text = line(table.headings, widths);
    for (const auto& row : table.rows)
        text += line(row, widths);
    return text;
}

} // namespace ostrivane::cli
