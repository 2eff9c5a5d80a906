#include "core/sampling/platform/Uptime.hpp"

namespace ostrivane {

std::optional<double> uptimeSince(std::optional<Date> bootTime, Date now, std::optional<double> awakeSeconds) {
    if (bootTime && now > *bootTime)
        return now - *bootTime;
    return awakeSeconds;
}

} // namespace ostrivane
