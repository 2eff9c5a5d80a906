#include "core/model/Text.hpp"

#include <fmt/format.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <version>

#ifndef __cpp_lib_to_chars
#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdlib>
#if __has_include(<xlocale.h>)
#include <xlocale.h>
#endif
#endif

namespace ostrivane::Text {

namespace {

constexpr std::string_view whiteSpace = " \t\r\n";
constexpr UChar32 replacement = 0xFFFD;

/// Calls `take(codePoint, bytes)` for each character of `text`; the code point is negative for bytes that are no UTF-8.
template <class Take>
void eachCharacter(std::string_view text, Take take) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto size = static_cast<std::int64_t>(text.size());
    for (std::int64_t next = 0; next < size;) {
        const std::int64_t start = next;
        UChar32 character;
        U8_NEXT(bytes, next, size, character);
        if (!take(character, text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(next - start))))
            return;
    }
}

void append(std::string& out, UChar32 character) {
    std::uint8_t bytes[U8_MAX_LENGTH];
    int size = 0;
    U8_APPEND_UNSAFE(bytes, size, character);
    out.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
}

int columnsOf(UChar32 character) {
    switch (u_getIntPropertyValue(character, UCHAR_HANGUL_SYLLABLE_TYPE)) {
    case U_HST_VOWEL_JAMO: // drawn into the syllable's first letter; file names of some systems are taken apart like
                           // this
    case U_HST_TRAILING_JAMO:
        return 0;
    default:
        break;
    }
    switch (u_charType(character)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
    case U_FORMAT_CHAR:
    case U_CONTROL_CHAR:
        return 0;
    default:
        break;
    }
    const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

char loweredASCII(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isPlain(std::string_view text) {
    for (const char c : text)
        if (c < ' ' || c > '~')
            return false;
    return true;
}

} // namespace

std::vector<std::string_view> lines(std::string_view text) {
    std::vector<std::string_view> found;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        found.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            break;
        text.remove_prefix(end + 1);
    }
    return found;
}

std::vector<std::string_view> words(std::string_view text) {
    std::vector<std::string_view> found;
    for (std::size_t end = 0;;) {
        const std::size_t start = text.find_first_not_of(" \t", end);
        if (start == std::string_view::npos)
            return found;
        end = std::min(text.find_first_of(" \t", start), text.size());
        found.push_back(text.substr(start, end - start));
    }
}

std::string_view trimmed(std::string_view text) {
    const std::size_t start = text.find_first_not_of(whiteSpace);
    if (start == std::string_view::npos)
        return {};
    return text.substr(start, text.find_last_not_of(whiteSpace) - start + 1);
}

template <>
std::optional<double> number<double>(std::string_view text) {
    // Letters would be "inf", "nan" or hexadecimal; none of them is a figure that anything prints.
    if (text.empty() || text.find_first_not_of("0123456789+-.eE") != std::string_view::npos)
        return std::nullopt;
    double value = 0;
#ifdef __cpp_lib_to_chars
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
#else
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    const std::string copy(text);
    char* end = nullptr;
    errno = 0;
    value = strtod_l(copy.c_str(), &end, plain);
    const bool fits = errno != ERANGE || (value != 0 && std::isfinite(value)); // set for subnormal numbers too
    const bool whole = end == copy.c_str() + copy.size() && text.front() != '+' && fits;
#endif
    return whole ? std::optional(value) : std::nullopt;
}

std::string repaired(std::string_view text) {
    if (isPlain(text))
        return std::string(text);
    std::string out;
    out.reserve(text.size());
    eachCharacter(text, [&](UChar32 character, std::string_view bytes) {
        if (character < 0)
            append(out, replacement);
        else
            out += bytes;
        return true;
    });
    return out;
}

std::string lowered(std::string text) {
    const bool isASCII =
        std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    if (isASCII || text.size() > std::numeric_limits<std::int32_t>::max()) { // ICU counts in 32 bits
        std::ranges::transform(text, text.begin(), loweredASCII);
        return text;
    }
    const auto size = static_cast<std::int32_t>(text.size());
    std::string out;
    icu::StringByteSink<std::string> sink(&out, size);
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8ToLower("", 0, {text.data(), size}, sink, nullptr, status);
    return U_SUCCESS(status) ? out : text;
}

bool containsCaseless(std::string_view text, std::string_view word) {
    const auto isSame = [](char c, char lower) { return loweredASCII(c) == lower; };
    return std::search(text.begin(), text.end(), word.begin(), word.end(), isSame) != text.end();
}

std::string visible(std::string_view text) {
    if (isPlain(text))
        return std::string(text);
    std::string out;
    out.reserve(text.size());
    eachCharacter(text, [&](UChar32 character, std::string_view bytes) {
        constexpr UChar32 pictures = 0x2400; // U+2400 to U+241F stand for 0 to 31, U+2421 for 127
        if (character < 0)
            append(out, replacement);
        else if (character < ' ')
            append(out, pictures + character);
        else if (character == 0x7F)
            append(out, 0x2421);
        else if (const auto type = u_charType(character); type == U_CONTROL_CHAR || type == U_FORMAT_CHAR ||
                                                          type == U_LINE_SEPARATOR || type == U_PARAGRAPH_SEPARATOR)
            fmt::format_to(std::back_inserter(out), "<U+{:04X}>", static_cast<std::uint32_t>(character));
        else
            out += bytes;
        return true;
    });
    return out;
}

int columns(std::string_view text) {
    if (isPlain(text))
        return static_cast<int>(text.size());
    int sum = 0;
    eachCharacter(text, [&](UChar32 character, std::string_view) {
        sum += character < 0 ? 1 : columnsOf(character);
        return true;
    });
    return sum;
}

std::string fitted(std::string_view text, int width) {
    if (width <= 0)
        return {};
    if (columns(text) <= width)
        return std::string(text);
    std::string out;
    int used = 0;
    eachCharacter(text, [&](UChar32 character, std::string_view bytes) {
        used += character < 0 ? 1 : columnsOf(character);
        if (used > width - 1)
            return false;
        out += bytes;
        return true;
    });
    return out + "…";
}

} // namespace ostrivane::Text
