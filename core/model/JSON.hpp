#pragma once

#include "core/model/PidMap.hpp"
#include "core/model/RawValue.hpp"

#include <boost/describe/members.hpp>
#include <boost/json/value.hpp>
#include <boost/mp11/algorithm.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// Records to JSON text and back, from their descriptions. An absent optional is `null`; an enumeration is its raw
/// value; a `Date` is its seconds since 1970. Heavy to compile: for sources, not for headers.
namespace ostrivane::JSON {

/// The document in `text`. Numbers with a fraction are read exactly, so that a figure survives being written and read.
/// Absent for text that is no single JSON document, and for one nested deeper than 32 levels.
std::optional<boost::json::value> parse(std::string_view text);

/// Appends `text` in quotes. Bytes that are no UTF-8 become U+FFFD.
void writeText(std::string& out, std::string_view text);

/// Appends the shortest text that reads back as `number`; `null` if it is not finite.
void writeNumber(std::string& out, double number);

template <class T>
concept Described = boost::describe::has_describe_members<T>::value;

template <class T>
using MembersOf = boost::describe::describe_members<T, boost::describe::mod_any_access>;

template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};

template <class T>
struct IsList : std::false_type {};
template <class T>
struct IsList<std::vector<T>> : std::true_type {};

template <class T>
struct IsFixedList : std::false_type {};
template <class T, std::size_t size>
struct IsFixedList<std::array<T, size>> : std::true_type {};

template <class T>
struct IsIndexMap : std::false_type {};
template <std::integral Key, class T>
struct IsIndexMap<std::map<Key, T>> : std::true_type {};
template <class T>
struct IsIndexMap<PidMap<T>> : std::true_type {};

/// The entries of a map by ascending key, so that equal maps give equal texts.
template <class Map>
std::vector<const typename Map::value_type*> ascending(const Map& map) {
    std::vector<const typename Map::value_type*> entries;
    entries.reserve(map.size());
    for (const auto& entry : map)
        entries.push_back(&entry);
    std::ranges::sort(entries, {}, [](const auto* entry) { return entry->first; });
    return entries;
}

/// A record of one number that is written as that number (`Date`).
template <class T>
concept Instant = Described<T> && requires(T value) {
    { value.seconds } -> std::same_as<double&>;
} && sizeof(T) == sizeof(double);

/// A record that is not read unless each of its members is there: `static constexpr bool allMembersRequired = true`.
template <class T>
constexpr bool needsEveryMember = requires {
    requires T::allMembersRequired;
};

/// Appends the JSON of `value` to `out`.
template <class T>
void write(std::string& out, const T& value) {
    if constexpr (std::is_same_v<T, bool>) {
        out += value ? "true" : "false";
    } else if constexpr (std::is_integral_v<T>) {
        std::array<char, 24> digits;
        out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
    } else if constexpr (std::is_floating_point_v<T>) {
        writeNumber(out, value);
    } else if constexpr (TextEnum<T>) {
        writeText(out, rawValue(value));
    } else if constexpr (IntEnum<T>) {
        write(out, rawValue(value));
    } else if constexpr (std::is_convertible_v<const T&, std::string_view>) {
        writeText(out, value);
    } else if constexpr (IsOptional<T>::value) {
        if (value)
            write(out, *value);
        else
            out += "null";
    } else if constexpr (IsIndexMap<T>::value) {
        out += '{';
        for (bool first = true; const auto* entry : ascending(value)) {
            out += first ? "\"" : ",\"";
            first = false;
            write(out, entry->first);
            out += "\":";
            write(out, entry->second);
        }
        out += '}';
    } else if constexpr (IsList<T>::value || IsFixedList<T>::value) {
        out += '[';
        for (bool first = true; const auto& item : value) {
            if (!first)
                out += ',';
            first = false;
            write(out, item);
        }
        out += ']';
    } else if constexpr (Instant<T>) {
        writeNumber(out, value.seconds);
    } else {
        static_assert(Described<T>, "describe the record");
        out += '{';
        bool first = true;
        boost::mp11::mp_for_each<MembersOf<T>>([&](auto member) {
            out += first ? "\"" : ",\"";
            first = false;
            out += member.name;
            out += "\":";
            write(out, value.*member.pointer);
        });
        out += '}';
    }
}

template <class T>
std::string text(const T& value) {
    std::string out;
    write(out, value);
    return out;
}

/// Reads a value of the type `T`. A member that is missing keeps its default, one that the record does not know is
/// passed over; so older and newer files both read. Absent when a value is of the wrong kind, out of range or no known
/// case, and when a record lacks a member that it needs.
template <class T>
std::optional<T> read(const boost::json::value& json) {
    if constexpr (std::is_same_v<T, bool>) {
        return json.is_bool() ? std::optional(json.get_bool()) : std::nullopt;
    } else if constexpr (std::is_integral_v<T>) {
        boost::json::error_code error;
        const T number = json.to_number<T>(error);
        return error ? std::nullopt : std::optional(number);
    } else if constexpr (std::is_floating_point_v<T>) {
        boost::json::error_code error;
        const T number = json.to_number<T>(error);
        return error || !std::isfinite(number) ? std::nullopt : std::optional(number); // 1e999 is a number in JSON
    } else if constexpr (TextEnum<T>) {
        return json.is_string() ? fromRawValue<T>(std::string_view(json.get_string())) : std::nullopt;
    } else if constexpr (IntEnum<T>) {
        const auto number = read<long long>(json);
        return number ? fromRawValue<T>(*number) : std::nullopt;
    } else if constexpr (std::is_same_v<T, std::string>) {
        return json.is_string() ? std::optional(std::string(std::string_view(json.get_string()))) : std::nullopt;
    } else if constexpr (IsOptional<T>::value) {
        if (json.is_null())
            return T(std::nullopt);
        auto value = read<typename T::value_type>(json);
        return value ? std::optional<T>(*std::move(value)) : std::nullopt;
    } else if constexpr (IsIndexMap<T>::value) {
        if (!json.is_object())
            return std::nullopt;
        T map;
        for (const auto& [name, item] : json.get_object()) {
            typename T::key_type key{};
            const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), key);
            auto value = read<typename T::mapped_type>(item);
            if (error != std::errc() || end != name.data() + name.size() || !value)
                return std::nullopt;
            map.emplace(key, *std::move(value));
        }
        return map;
    } else if constexpr (IsList<T>::value) {
        if (!json.is_array())
            return std::nullopt;
        T list;
        list.reserve(json.get_array().size());
        for (const auto& item : json.get_array()) {
            auto value = read<typename T::value_type>(item);
            if (!value)
                return std::nullopt;
            list.push_back(*std::move(value));
        }
        return list;
    } else if constexpr (IsFixedList<T>::value) {
        T list{};
        if (!json.is_array() || json.get_array().size() != list.size())
            return std::nullopt;
        for (std::size_t index = 0; index < list.size(); ++index) {
            auto value = read<typename T::value_type>(json.get_array()[index]);
            if (!value)
                return std::nullopt;
            list[index] = *std::move(value);
        }
        return list;
    } else if constexpr (Instant<T>) {
        const auto seconds = read<double>(json);
        return seconds ? std::optional(T{*seconds}) : std::nullopt;
    } else {
        static_assert(Described<T>, "describe the record");
        if (!json.is_object())
            return std::nullopt;
        T record{};
        bool whole = true;
        boost::mp11::mp_for_each<MembersOf<T>>([&](auto member) {
            using Member = std::remove_cvref_t<decltype(record.*member.pointer)>;
            const boost::json::value* field = whole ? json.get_object().if_contains(member.name) : nullptr;
            if (!field) {
                whole = whole && !needsEveryMember<T>;
                return;
            }
            if (auto value = read<Member>(*field))
                record.*member.pointer = *std::move(value);
            else
                whole = false;
        });
        return whole ? std::optional(std::move(record)) : std::nullopt;
    }
}

} // namespace ostrivane::JSON
