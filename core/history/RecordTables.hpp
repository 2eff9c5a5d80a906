#pragma once

#include "core/history/StorageSize.hpp"
#include "core/history/StoredAlert.hpp"
#include "core/history/StoredSession.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace ostrivane {

class SQLiteDatabase;

/// The statements over alerts, sessions and storage sizes. Times are whole seconds since 1970. They throw as the
/// database does.
namespace RecordTables {

/// Writes the alert, whose `id` means nothing yet, and answers the id of its row.
std::int64_t insertAlert(SQLiteDatabase& database, const StoredAlert& alert);
std::vector<StoredAlert> alerts(SQLiteDatabase& database, std::int64_t limit);
void deleteAlerts(SQLiteDatabase& database);

std::int64_t insertSession(SQLiteDatabase& database, const std::string& name, std::int64_t start);
void finishSession(SQLiteDatabase& database, std::int64_t id, std::int64_t end, const std::string& summaryJSON);
std::vector<StoredSession> sessions(SQLiteDatabase& database);
void deleteSession(SQLiteDatabase& database, std::int64_t id);

void insertStorage(SQLiteDatabase& database, const std::string& path, std::int64_t date, std::uint64_t bytes);
/// The oldest since then: none or one.
std::vector<StorageSize> storageBaseline(SQLiteDatabase& database, const std::string& path, std::int64_t since);
std::vector<StorageSize> storageSeries(SQLiteDatabase& database, const std::string& path, std::int64_t since);

} // namespace RecordTables
} // namespace ostrivane
