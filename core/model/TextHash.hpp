#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace ostrivane {

/// Lets an unordered map of texts be asked with a view, without making a text of it first; together with
/// `std::equal_to<>`.
struct TextHash {
    using is_transparent = void; // NOLINT(readability-identifier-naming): the library's name
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};

} // namespace ostrivane
