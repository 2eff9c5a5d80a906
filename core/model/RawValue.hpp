#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

namespace ostrivane {

/// One case of an enumeration and the text that stands for it in files and on screen.
template <class Enum>
using RawText = std::pair<Enum, std::string_view>;

/// Selects the overload `rawTexts(EnumTag<E>)` that an enumeration with text raw values declares beside itself.
template <class Enum>
struct EnumTag {};

/// An enumeration whose raw values are texts: it has a table `rawTexts`.
template <class Enum>
concept TextEnum = std::is_enum_v<Enum> && requires {
    rawTexts(EnumTag<Enum>{});
};

/// An enumeration whose raw values are its integers, 0 to `lastCase(EnumTag<E>)`.
template <class Enum>
concept IntEnum = std::is_enum_v<Enum> && requires {
    lastCase(EnumTag<Enum>{});
};

/// The text of a case; empty for a value that is no case.
template <TextEnum Enum>
constexpr std::string_view rawValue(Enum value) {
    for (const auto& [known, text] : rawTexts(EnumTag<Enum>{}))
        if (known == value)
            return text;
    return {};
}

template <IntEnum Enum>
constexpr int rawValue(Enum value) {
    return static_cast<int>(value);
}

/// The case with that raw value; absent when there is none.
template <TextEnum Enum>
constexpr std::optional<Enum> fromRawValue(std::string_view text) {
    for (const auto& [known, knownText] : rawTexts(EnumTag<Enum>{}))
        if (knownText == text)
            return known;
    return std::nullopt;
}

template <IntEnum Enum>
constexpr std::optional<Enum> fromRawValue(long long value) {
    if (value < 0 || value > static_cast<long long>(lastCase(EnumTag<Enum>{})))
        return std::nullopt;
    return static_cast<Enum>(value);
}

} // namespace ostrivane
