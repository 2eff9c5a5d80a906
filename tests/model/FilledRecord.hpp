#pragma once

#include "core/model/Described.hpp"
#include "core/model/RawValue.hpp"

#include <boost/describe/members.hpp>
#include <boost/mp11/algorithm.hpp>

#include <array>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace ostrivane {

/// Gives every member of a record, at any depth, a value that differs from its default and from its neighbours':
/// optionals are present, lists hold two items. A member that is added later is filled too.
class Filler {
public:
    template <class T>
    void fill(T& value) {
        if constexpr (std::is_same_v<T, bool>)
            value = !value;
        else if constexpr (TextEnum<T> || IntEnum<T>)
            value = anotherCase(value);
        else if constexpr (std::is_integral_v<T>)
            value = static_cast<T>(++count);
        else if constexpr (std::is_floating_point_v<T>)
            value = ++count + 0.1;
        else if constexpr (std::is_same_v<T, std::string>)
            value = "text \"" + std::to_string(++count) + "\" é";
        else
            fillParts(value);
    }

private:
    template <class T>
    static T anotherCase(T value) {
        if constexpr (TextEnum<T>) {
            const auto texts = rawTexts(EnumTag<T>{});
            return texts.front().first == value ? texts.back().first : texts.front().first;
        } else {
            return value == T{} ? lastCase(EnumTag<T>{}) : T{};
        }
    }

    template <class T>
    void fillParts(std::optional<T>& value) {
        fill(value.emplace());
    }
    template <class T>
    void fillParts(std::vector<T>& list) {
        list.resize(2);
        for (T& item : list)
            fill(item);
    }
    template <class T, std::size_t size>
    void fillParts(std::array<T, size>& list) {
        for (T& item : list)
            fill(item);
    }
    template <class T>
    void fillParts(T& record) {
        boost::mp11::mp_for_each<boost::describe::describe_members<T, boost::describe::mod_any_access>>(
            [&](auto member) { fill(record.*member.pointer); });
    }

    int count = 0;
};

template <class Record>
Record filledRecord() {
    Record record;
    Filler().fill(record);
    return record;
}

} // namespace ostrivane
