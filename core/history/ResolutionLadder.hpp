#pragma once

#include <cstdint>
#include <limits>

namespace ostrivane {

/// Rows become coarser with age: minutes for a day, quarters of an hour for a week, hours from then on.
struct RollUpStep {
    std::int64_t from = 0; ///< seconds a row
    std::int64_t to = 0;   ///< seconds a row
    std::int64_t age = 0;  ///< seconds from which on
};

inline constexpr RollUpStep minutesToQuarters{.from = 60, .to = 900, .age = 86400};
inline constexpr RollUpStep quartersToHours{.from = 900, .to = 3600, .age = 604800};

/// Where the coarser rows end at `now`, both in seconds since 1970: only whole buckets of theirs are made.
constexpr std::int64_t alignedCut(std::int64_t now, const RollUpStep& step) {
    return now < std::numeric_limits<std::int64_t>::min() + step.age ? now : (now - step.age) / step.to * step.to;
}

} // namespace ostrivane
