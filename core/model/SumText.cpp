#include "core/model/SumText.hpp"

#include "core/model/Formatters.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace ostrivane::SumText {

std::string amount(double bytes) {
    constexpr double most = 9e18; // fits the integer
    if (!std::isfinite(bytes) || bytes <= 0)
        return std::string(Formatters::dash);
    return Formatters::storage(static_cast<std::uint64_t>(std::min(bytes, most)));
}

std::string energy(double wattHours) {
    return wattHours > 0 ? Formatters::energy(wattHours) : std::string(Formatters::dash);
}

std::string processorTime(double seconds) {
    constexpr double minute = 60;
    return seconds < minute ? Formatters::decimal(seconds, 1) + " s" : Formatters::duration(seconds);
}

} // namespace ostrivane::SumText
