#include "app/pages/DayText.hpp"

#include "core/model/Calendar.hpp"
#include "core/model/Formatters.hpp"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <ctime>
#include <optional>
#include <string_view>

namespace ostrivane::DayText {

namespace {

constexpr std::array<std::string_view, 12> months{"January",   "February", "March",    "April",
                                                  "May",       "June",     "July",     "August",
                                                  "September", "October",  "November", "December"};
constexpr double farthest = 1e12; // seconds, some thirty thousand years
constexpr int firstYear = 1900;   // of the C library

std::optional<std::tm> local(Date date) {
    if (!(std::abs(date.seconds) < farthest))
        return std::nullopt;
    const auto seconds = static_cast<std::time_t>(std::floor(date.seconds));
    std::tm parts{};
    return localtime_r(&seconds, &parts) ? std::optional(parts) : std::nullopt;
}

} // namespace

std::string day(Date date, Date now) {
    const auto parts = local(date);
    if (!parts)
        return std::string(Formatters::dash);
    const Date start = Calendar::startOfDay(date);
    const Date today = Calendar::startOfDay(now);
    if (start == today)
        return "Today";
    if (start == Calendar::startOfDay(today + -1)) // whatever the length of that day
        return "Yesterday";
    const std::string_view month = months[static_cast<std::size_t>(parts->tm_mon)];
    const auto present = local(now);
    if (present && present->tm_year == parts->tm_year)
        return fmt::format("{} {}", parts->tm_mday, month);
    return fmt::format("{} {} {}", parts->tm_mday, month, parts->tm_year + firstYear);
}

std::string timeOfDay(Date date) {
    const auto parts = local(date);
    return parts ? fmt::format("{:02}:{:02}", parts->tm_hour, parts->tm_min) : std::string(Formatters::dash);
}

} // namespace ostrivane::DayText
