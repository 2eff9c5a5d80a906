#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane::cli {

/// A table of words. The first column is a name, which gives way to the others; those stand at the right of their
/// columns, each as wide as its longest words.
struct TextTable {
    std::vector<std::string> headings;
    std::vector<std::vector<std::string>> rows; ///< as many words each as there are headings; safe to print
};

/// The lines of the table. Where `width` is too narrow for all of it, the columns to the right go, and what is then too
/// long is cut off; without a width nothing is.
std::string tableText(const TextTable& table, std::optional<int> width);

} // namespace ostrivane::cli
