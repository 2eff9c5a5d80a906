#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace ostrivane {

/// A value bound to a statement: a 64-bit integer, a double, a text or NULL.
struct SQLValue {
    std::variant<std::int64_t, double, std::string, std::nullptr_t> value;

    SQLValue(std::int64_t number) : value(number) {}         // NOLINT(google-explicit-constructor)
    SQLValue(double number) : value(number) {}               // NOLINT(google-explicit-constructor)
    SQLValue(std::string text) : value(std::move(text)) {}   // NOLINT(google-explicit-constructor)
    SQLValue(const char* text) : value(std::string(text)) {} // NOLINT(google-explicit-constructor)
    SQLValue(std::nullptr_t null) : value(null) {}           // NOLINT(google-explicit-constructor)
    template <class Type>
    SQLValue(const std::optional<Type>& optional) // NOLINT(google-explicit-constructor)
        : value(nullptr) {
        if (optional)
            value = SQLValue(*optional).value;
    }
};

} // namespace ostrivane
