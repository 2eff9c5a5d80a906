#pragma once

#include "core/history/AppUsageSummary.hpp"

#include <cstdint>
#include <vector>

namespace ostrivane {

class SQLiteDatabase;

/// Which applications used most. Reading every row of a month for that takes long, so sums of past hours and days are
/// kept beside them (`app_sums`). A span's sums are always those of the rows that stand in the file now: whoever
/// changes rows of the past drops the spans they lie in, within the same transaction, and what has no sums is read row
/// by row.
namespace AppSums {

/// The applications since `since` (whole seconds since 1970), the one with most processor time first, those with equal
/// time by key. @param window seconds that the averages are over. A negative `limit` is none.
std::vector<AppUsageSummary> top(SQLiteDatabase& database, std::int64_t since, double window, std::int64_t limit);

/// Rows came for buckets from `first` to `last`.
void rowsCame(SQLiteDatabase& database, std::int64_t first, std::int64_t last);

/// Rows of `res` seconds before `aligned` were made coarser.
void rowsCoarsened(SQLiteDatabase& database, std::int64_t res, std::int64_t aligned);

/// Rows before `cutoff` were deleted.
void rowsDeleted(SQLiteDatabase& database, std::int64_t cutoff);

/// Makes sums that are missing, of whole past days whose rows are coarse by now and of the whole hours since; a few at
/// a time, the newest first. Comes after the roll-up at the same `now` (whole seconds since 1970).
void refresh(SQLiteDatabase& database, std::int64_t now);

} // namespace AppSums
} // namespace ostrivane
