#pragma once

#include <cstdlib>

namespace ostrivane {

/// Ends a fuzz run as a finding when what must always hold does not.
inline void require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace ostrivane
