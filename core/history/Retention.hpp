#pragma once

#include <cstdint>

namespace ostrivane {

class SQLiteDatabase;

/// Keeps the file from growing without bound.
namespace Retention {

/// Makes old rows coarser and deletes those older than `retentionDays`, in one transaction; then shrinks the
/// write-ahead log. Throws as the database does, and has changed nothing then. A second run at the same time changes
/// nothing. @param now whole seconds since 1970
void maintain(SQLiteDatabase& database, std::int64_t now, std::int64_t retentionDays);

} // namespace Retention
} // namespace ostrivane
