#pragma once

#include "core/history/AppMoment.hpp"
#include "core/history/AppRow.hpp"
#include "core/history/SystemRow.hpp"
#include "core/history/Totals.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

class SQLiteDatabase;

/// The statements over `system_samples` and `app_samples`. Times are whole seconds since 1970. They throw as the
/// database does.
namespace SampleTables {

void insert(SQLiteDatabase& database, const SystemRow& row);
void insert(SQLiteDatabase& database, const AppRow& row);

/// Rows of every resolution in the order of their buckets.
std::vector<SystemRow> systemRows(SQLiteDatabase& database, std::int64_t since, std::int64_t until);
std::vector<AppRow> appRows(SQLiteDatabase& database, const std::string& key, std::int64_t since);
/// A negative limit is none.
std::vector<AppMoment> appsAt(SQLiteDatabase& database, std::int64_t second, std::int64_t limit);
Totals totals(SQLiteDatabase& database, std::int64_t since);
std::optional<std::int64_t> earliestBucket(SQLiteDatabase& database);

} // namespace SampleTables
} // namespace ostrivane
