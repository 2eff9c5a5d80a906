#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace ostrivane {

/// A process and the application unit that it is in.
struct UnitMember {
    std::int32_t pid = 0;
    std::uint64_t start = 0; ///< any measure that grows
    std::string_view unit;   ///< `ControlGroupUnit::group`; empty: in none
};

/// For each of `members` the process of its unit that started first, of two at once the one with the lower pid; its own
/// pid when it is in no unit.
std::vector<std::int32_t> unitLeaders(const std::vector<UnitMember>& members);

} // namespace ostrivane
