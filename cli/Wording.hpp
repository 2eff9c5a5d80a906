#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How texts for the terminal are laid out. What comes in must be safe to print. Without a width nothing is cut off or
/// broken into lines.
namespace ostrivane::cli {

/// The beginning of `text` that fits.
std::string clipped(std::string_view text, std::optional<int> width);

/// Words of `text` in lines that fit, each behind `margin`, some blanks. A word that is longer than a line is cut off.
std::vector<std::string> wrapped(std::string_view text, std::string_view margin, std::optional<int> width);

/// The lines, each with a line feed and without blanks at its end.
std::string joined(const std::vector<std::string>& lines);

/// One line of a name and its value.
std::string fact(std::string_view name, std::string_view value, std::optional<int> width);

/// The same with a value of many words, broken into lines below each other where there is room; nothing without a
/// value.
std::string longFact(std::string_view name, std::string_view value, std::optional<int> width);

} // namespace ostrivane::cli
