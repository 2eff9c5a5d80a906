#pragma once

#include <charconv>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Small tools for text that comes from outside the program.
namespace ostrivane::Text {

/// The lines of `text` without their line feeds. A feed at the very end starts no further line; the views point into
/// `text`.
std::vector<std::string_view> lines(std::string_view text);

/// The words of `text`: what stands between blanks and tabs. The views point into `text`.
std::vector<std::string_view> words(std::string_view text);

/// `text` without white space (blank, tab, line feed, carriage return) at both ends.
std::string_view trimmed(std::string_view text);

/// The whole of `text` as a decimal number; absent when anything else stands in it, and when it does not fit.
template <std::integral Number>
std::optional<Number> number(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

/// The same for a number with a fraction; the point is a point whatever the user's language. Infinity and NaN are
/// absent.
template <std::floating_point Number>
std::optional<Number> number(std::string_view text);
template <>
std::optional<double> number<double>(std::string_view text);

/// `text` as valid UTF-8: each byte sequence that is none becomes U+FFFD.
std::string repaired(std::string_view text);

/// `text` in lower case by Unicode's full mapping, in no language: a Turkish desktop reads "PIP" as any other does, and
/// the Kelvin sign becomes "k". Bytes that are no UTF-8 stay. Text of ASCII alone is changed in place.
std::string lowered(std::string text);

/// Whether `word`, some ASCII in lower case, stands anywhere in `text`, in capitals or not.
bool containsCaseless(std::string_view text, std::string_view word);

/// `text`, valid UTF-8, with control and format characters made visible, so that a name can neither move the cursor nor
/// hide what it says: a control character as its picture (U+2400 and on), a format character as "<U+202E>".
std::string visible(std::string_view text);

/// Columns that `text`, valid UTF-8 without control characters, takes in a terminal: wide characters count 2, combining
/// 0.
int columns(std::string_view text);

/// The longest beginning of `text` that takes at most `width` columns, with "…" in the last one when something was left
/// out.
std::string fitted(std::string_view text, int width);

} // namespace ostrivane::Text
