#pragma once

#include "app/model/OfferedValues.hpp"
#include "core/model/JSON.hpp"
#include "core/model/RawValue.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// What a person may choose for a setting, and what was typed as a value of it. `Value` is the type that the setting
/// has. Heavy to compile: for sources, not for headers.
namespace ostrivane::cli {

/// In words, as "2 to 30 seconds" or "light, dark".
template <class Value>
std::string offeredText(std::string_view key) {
    if constexpr (std::is_same_v<Value, bool>) {
        return "true, false";
    } else if constexpr (std::is_arithmetic_v<Value>) {
        const auto range = offeredRange(key);
        return range ? fmt::format("{} to {} {}", range->least, range->most, range->unit) : "any number";
    } else if constexpr (TextEnum<Value>) {
        std::vector<std::string_view> names;
        for (const auto& [known, text] : rawTexts(EnumTag<Value>{}))
            names.push_back(text);
        return fmt::format("{}", fmt::join(names, ", "));
    } else if constexpr (std::is_same_v<Value, std::string>) {
        return fmt::format("{}", fmt::join(popoverTabs, ", "));
    } else {
        return "a list in JSON";
    }
}

/// The value that `text` names; absent when it is not offered.
template <class Value>
std::optional<Value> offeredValue(std::string_view key, const std::string& text) {
    if constexpr (std::is_same_v<Value, bool>) {
        return text == "true" ? std::optional(true) : text == "false" ? std::optional(false) : std::nullopt;
    } else if constexpr (std::is_arithmetic_v<Value>) {
        const auto number = Text::number<Value>(text);
        const auto range = offeredRange(key);
        const bool isOffered =
            number &&
            (!range || (static_cast<double>(*number) >= range->least && static_cast<double>(*number) <= range->most));
        return isOffered ? number : std::nullopt;
    } else if constexpr (TextEnum<Value>) {
        return fromRawValue<Value>(text);
    } else if constexpr (std::is_same_v<Value, std::string>) {
        return std::ranges::find(popoverTabs, text) == popoverTabs.end() ? std::nullopt : std::optional(text);
    } else {
        const auto json = JSON::parse(text);
        return json ? JSON::read<Value>(*json) : std::nullopt;
    }
}

} // namespace ostrivane::cli
