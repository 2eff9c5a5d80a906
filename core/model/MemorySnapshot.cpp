#include "core/model/MemorySnapshot.hpp"

#include <algorithm>

namespace ostrivane {

std::string_view label(MemoryPressure pressure) {
    switch (pressure) {
    case MemoryPressure::normal:
        return "Normal";
    case MemoryPressure::warning:
        return "Elevated";
    case MemoryPressure::critical:
        return "Critical";
    }
    return {};
}

std::int64_t MemorySnapshot::pressurePercent() const {
    return 100 - std::clamp<std::int64_t>(availablePercent, 0, 100);
}

double MemorySnapshot::usedFraction() const {
    return total == 0 ? 0 : static_cast<double>(used) / static_cast<double>(total);
}

} // namespace ostrivane
