#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/// Sets of processors as the kernel writes them: "0-3,8,10-11".
namespace ostrivane::CPUList {

/// No kernel is built for more processors than this; numbers from it on are not believed.
constexpr std::int64_t limit = 8192;

/// The numbers in ascending order; an empty text is an empty set. Absent for a text of another form. Numbers from
/// `limit` on are left out.
std::optional<std::vector<std::int64_t>> parse(std::string_view text);

} // namespace ostrivane::CPUList
