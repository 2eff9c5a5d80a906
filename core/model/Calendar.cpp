#include "core/model/Calendar.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

namespace ostrivane::Calendar {

namespace {

constexpr double farthest = 1e14; // seconds, some three million years

} // namespace

Date startOfDay(Date date) {
    if (!(std::abs(date.seconds) < farthest))
        return date;
    const auto seconds = static_cast<std::time_t>(std::floor(date.seconds));
    std::tm local{};
    if (!localtime_r(&seconds, &local))
        return date;
    local.tm_hour = local.tm_min = local.tm_sec = 0;
    std::time_t midnight = seconds + 1;
    for (const int summer : {1, 0, -1}) { // where the clocks change at midnight there can be two, or none
        std::tm asked = local;
        asked.tm_isdst = summer;
        const std::time_t candidate = std::mktime(&asked);
        if (asked.tm_mday == local.tm_mday && asked.tm_isdst >= 0 && (summer < 0 || asked.tm_isdst == summer))
            midnight = std::min(midnight, candidate);
    }
    return midnight > seconds ? date : Date{static_cast<double>(midnight)};
}

Date now() {
    return Date{std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count()};
}

} // namespace ostrivane::Calendar
