#include "core/model/DateText.hpp"

#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>

namespace ostrivane::DateText {

namespace {

namespace chrono = std::chrono;

/// Every digit stands for one; the rest stands for itself.
constexpr std::string_view pattern = "0000-00-00T00:00:00";
constexpr double firstYear = -62'167'219'200;  ///< 0000-01-01, seconds since 1970
constexpr double yearBehind = 253'402'300'800; ///< 10000-01-01

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool hasForm(std::string_view text) {
    return std::ranges::equal(text, pattern, [](char c, char form) { return form == '0' ? isDigit(c) : c == form; });
}

/// What follows the whole seconds: nothing, or a point and digits.
std::optional<double> fraction(std::string_view text) {
    if (text.empty())
        return 0;
    if (text.size() < 2 || text.front() != '.' || !std::ranges::all_of(text.substr(1), isDigit))
        return std::nullopt;
    return Text::number<double>("0" + std::string(text));
}

} // namespace

std::optional<std::string> iso8601(Date date) {
    if (!(date.seconds >= firstYear && date.seconds < yearBehind))
        return std::nullopt;
    const chrono::sys_seconds instant{chrono::seconds{static_cast<std::int64_t>(std::floor(date.seconds))}};
    const auto midnight = chrono::floor<chrono::days>(instant);
    const chrono::year_month_day day{midnight};
    const chrono::hh_mm_ss time{instant - midnight};
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(day.year()),
                       static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()), time.hours().count(),
                       time.minutes().count(), time.seconds().count());
}

std::optional<Date> fromISO8601(std::string_view text) {
    if (!text.ends_with('Z') || !hasForm(text.substr(0, std::min(text.size(), pattern.size()))))
        return std::nullopt;
    const auto rest = fraction(text.substr(pattern.size(), text.size() - pattern.size() - 1));
    const auto part = [&](std::size_t at, std::size_t size) {
        return Text::number<int>(text.substr(at, size)).value_or(0);
    };
    const chrono::year_month_day day{chrono::year{part(0, 4)}, chrono::month{static_cast<unsigned>(part(5, 2))},
                                     chrono::day{static_cast<unsigned>(part(8, 2))}};
    const int hour = part(11, 2);
    const int minute = part(14, 2);
    const int second = part(17, 2);
    if (!rest || !day.ok() || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    const chrono::sys_seconds instant =
        chrono::sys_days{day} + chrono::hours{hour} + chrono::minutes{minute} + chrono::seconds{second};
    return Date{static_cast<double>(instant.time_since_epoch().count()) + *rest};
}

} // namespace ostrivane::DateText
