#include "app/model/DateWords.hpp"

#include "core/model/Calendar.hpp"
#include "core/model/Formatters.hpp"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <ctime>
#include <optional>
#include <string_view>

namespace ostrivane::DateWords {

namespace {

constexpr std::array<std::string_view, 12> months{"January",   "February", "March",    "April",
                                                  "May",       "June",     "July",     "August",
                                                  "September", "October",  "November", "December"};

std::optional<std::tm> local(Date date) {
    constexpr double farthest = 1e11; // three thousand years from now
    if (!(std::abs(date.seconds) < farthest))
        return std::nullopt;
    const auto seconds = static_cast<std::time_t>(std::floor(date.seconds));
    std::tm parts{};
    return localtime_r(&seconds, &parts) ? std::optional(parts) : std::nullopt;
}

bool isSameDay(Date one, Date other) {
    return Calendar::startOfDay(one) == Calendar::startOfDay(other);
}

} // namespace

std::string clock(Date date) {
    const auto parts = local(date);
    return parts ? fmt::format("{:02}:{:02}", parts->tm_hour, parts->tm_min) : std::string(Formatters::dash);
}

std::string day(Date date, Date now) {
    const auto parts = local(date);
    if (!parts)
        return std::string(Formatters::dash);
    std::string text = fmt::format("{} {}", parts->tm_mday, months.at(static_cast<std::size_t>(parts->tm_mon)));
    const auto present = local(now);
    if (!present || present->tm_year != parts->tm_year)
        text += fmt::format(" {}", parts->tm_year + 1900);
    return text;
}

std::string nearDay(Date date, Date now) {
    if (isSameDay(date, now))
        return "Today";
    const Date midnight = Calendar::startOfDay(now);
    return date < midnight && isSameDay(date, midnight + -1) ? "Yesterday" : day(date, now);
}

std::string moment(Date date, Date now) {
    return nearDay(date, now) + ", " + clock(date);
}

std::string span(Date from, Date to, Date now) {
    return moment(from, now) + " to " + (isSameDay(from, to) ? clock(to) : moment(to, now));
}

} // namespace ostrivane::DateWords
