#pragma once

#include "core/history/HistoryRange.hpp"
#include "core/model/Date.hpp"

#include <optional>
#include <vector>

/// Figures over time: pieces of any length, and what they amount to over a period.
namespace ostrivane::cli {

struct Period {
    Date start;
    Date end;

    double seconds() const { return end - start; }
};

/// The last `range` before `now`.
Period lastOf(HistoryRange range, Date now);

/// A figure over a stretch of time.
struct Piece {
    double start = 0; ///< seconds since 1970
    double length = 0;
    double value = 0;   ///< mean over the stretch
    double highest = 0; ///< within it
};

/// The means of `count` equal parts of `period`, each piece weighing as much as lies within the part. Absent where no
/// piece lies: nothing is known of that time.
std::vector<std::optional<double>> means(const std::vector<Piece>& pieces, const Period& period, int count);

/// What the pieces amount to within a period.
struct Extremes {
    double mean = 0; ///< over the time that they cover
    double lowest = 0;
    double highest = 0;
};
/// Absent when no piece lies within `period`.
std::optional<Extremes> extremes(const std::vector<Piece>& pieces, const Period& period);

/// Seconds of `period` that pieces cover, in the order of their starts.
double coverage(const std::vector<Piece>& pieces, const Period& period);

} // namespace ostrivane::cli
