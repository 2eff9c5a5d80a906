#include "core/model/ProcessSnapshot.hpp"

namespace ostrivane {

std::optional<double> ProcessSnapshot::uptime(Date now) const {
    return startTime ? std::optional(now - *startTime) : std::nullopt;
}

} // namespace ostrivane
