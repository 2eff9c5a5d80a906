#pragma once

#include <vector>

namespace ostrivane {

/// A visible column and the width it would like to have.
struct ColumnWish {
    int width = 0; ///< pixels; 0: takes what the others leave
    bool isNumeric = false;
};

/// Widths that fill `available` where they can: columns without a wish share what the others leave. Where that is less
/// than `comfortable` for each, the others give way in proportion, figures less than words; then the columns without a
/// wish do, down to `least`. What still does not fit is wider than `available`.
std::vector<int> columnWidths(const std::vector<ColumnWish>& columns, int available, int comfortable, int least);

} // namespace ostrivane
