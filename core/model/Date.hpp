#pragma once

#include "core/model/Described.hpp"

#include <compare>

namespace ostrivane {

/// An instant: seconds since 1970-01-01 00:00 UTC, with fractions.
struct Date {
    double seconds = 0;

    friend bool operator==(const Date&, const Date&) = default;
    friend auto operator<=>(const Date&, const Date&) = default; // NOLINT(modernize-use-nullptr): a 0 of the language
    /// Seconds from `earlier` to `later`; negative when they stand the other way round.
    friend constexpr double operator-(Date later, Date earlier) { return later.seconds - earlier.seconds; }
    friend constexpr Date operator+(Date date, double elapsed) { return Date{date.seconds + elapsed}; }
};
BOOST_DESCRIBE_STRUCT(Date, (), (seconds))
static_assert(describesEveryMember<Date>);

} // namespace ostrivane
