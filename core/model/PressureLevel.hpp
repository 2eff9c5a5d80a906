#pragma once

#include "core/model/MemorySnapshot.hpp"

namespace ostrivane {

/// 1, 2 or 4: the level of memory pressure as the history keeps it and alerts count it.
constexpr double pressureLevel(MemoryPressure pressure) {
    switch (pressure) {
    case MemoryPressure::normal:
        return 1;
    case MemoryPressure::warning:
        return 2;
    case MemoryPressure::critical:
        return 4;
    }
    return 1;
}

} // namespace ostrivane
