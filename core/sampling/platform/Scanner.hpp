#pragma once

#include "core/model/Text.hpp"

#include <concepts>
#include <optional>
#include <string_view>

namespace ostrivane {

/// Walks once over a text, in place: what is read on every tick is decoded without a list of its lines or words.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest(text) {}

    bool atEnd() const { return rest.empty(); }

    /// The next line without its line feed, which is passed over. The view points into the text.
    std::string_view line() { return take(rest.find('\n')); }

    /// The next word, what stands between blanks and tabs; empty when there is none left. Meant for one line.
    std::string_view word() {
        while (!rest.empty() && isBlank(rest.front()))
            rest.remove_prefix(1);
        std::size_t size = 0;
        while (size < rest.size() && !isBlank(rest[size]))
            ++size;
        const std::string_view found = rest.substr(0, size);
        rest.remove_prefix(size);
        return found;
    }

    /// The next word as a decimal number; absent when it is none. It is passed over either way.
    template <std::integral Number>
    std::optional<Number> number() {
        return Text::number<Number>(word());
    }

private:
    static bool isBlank(char c) { return c == ' ' || c == '\t'; }

    std::string_view take(std::size_t size) {
        const std::string_view found = rest.substr(0, size);
        rest.remove_prefix(size == std::string_view::npos ? rest.size() : size + 1);
        return found;
    }

    std::string_view rest;
};

} // namespace ostrivane
