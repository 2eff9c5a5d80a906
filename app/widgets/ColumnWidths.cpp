#include "app/widgets/ColumnWidths.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace ostrivane {

namespace {

constexpr double leastOfFigures = 0.72;
constexpr double leastOfWords = 0.5;

} // namespace

std::vector<int> columnWidths(const std::vector<ColumnWish>& columns, int available, int comfortable, int least) {
    int open = 0;
    double wished = 0;
    for (const ColumnWish& column : columns) {
        open += column.width == 0 ? 1 : 0;
        wished += column.width;
    }
    const double left = available - open * comfortable;
    const double factor = wished > 0 ? std::clamp(left / wished, 0.0, 1.0) : 1;

    std::vector<int> widths;
    int taken = 0;
    for (const ColumnWish& column : columns) {
        const double narrowest = column.isNumeric ? leastOfFigures : leastOfWords;
        widths.push_back(static_cast<int>(std::lround(column.width * std::max(factor, narrowest))));
        taken += widths.back();
    }
    int rest = available - taken;
    if (open == 0 && rest > 0 && !widths.empty())
        widths.back() += rest; // no line ends ahead of the edge
    for (std::size_t at = 0; at < columns.size() && open > 0; ++at) {
        if (columns[at].width != 0)
            continue;
        widths[at] = std::max(least, rest / open);
        rest -= widths[at];
        --open;
    }
    return widths;
}

} // namespace ostrivane
