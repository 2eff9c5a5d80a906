#pragma once

#include "core/model/Date.hpp"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace ostrivane {

/// The date in whole seconds since 1970, cut towards 0. A date that is no number is a programming fault, and traps.
inline std::int64_t wholeSeconds(Date date) {
    constexpr double bound = 9.2e18; // what a 64-bit number holds, and a margin
    if (!std::isfinite(date.seconds))
        std::abort();
    if (date.seconds >= bound)
        return std::numeric_limits<std::int64_t>::max();
    if (date.seconds <= -bound)
        return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(date.seconds);
}

} // namespace ostrivane
