#include "core/model/Calendar.hpp"

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
    local.tm_isdst = -1; // the clocks may have changed since midnight
    const std::time_t midnight = std::mktime(&local);
    return midnight > seconds ? date : Date{static_cast<double>(midnight)};
}

} // namespace ostrivane::Calendar
