#include "core/history/RecordTables.hpp"

#include "core/history/SQLiteDatabase.hpp"
#include "core/history/WholeSeconds.hpp"

#include <algorithm>
#include <limits>
#include <string_view>

namespace ostrivane::RecordTables {

namespace {

constexpr std::string_view insertAlertRow =
    "INSERT INTO alerts(ts, rule, severity, title, body, subject) VALUES(?,?,?,?,?,?)";
constexpr std::string_view selectLastID = "SELECT last_insert_rowid()";
constexpr std::string_view selectAlerts =
    "SELECT id, ts, rule, severity, title, body, subject FROM alerts ORDER BY ts DESC LIMIT ?";
constexpr std::string_view insertSessionRow = "INSERT INTO sessions(name, start) VALUES(?, ?)";
constexpr std::string_view updateSession = "UPDATE sessions SET end = ?, summary = ? WHERE id = ?";
constexpr std::string_view selectSessions = "SELECT id, name, start, end, summary FROM sessions ORDER BY start DESC";
constexpr std::string_view insertStorageRow = "INSERT OR REPLACE INTO storage_snapshots VALUES(?,?,?)";
constexpr std::string_view selectBaseline =
    "SELECT ts, bytes FROM storage_snapshots WHERE path = ? AND ts >= ? ORDER BY ts ASC LIMIT 1";
constexpr std::string_view selectSeries =
    "SELECT ts, bytes FROM storage_snapshots WHERE path = ? AND ts >= ? ORDER BY ts ASC";

Date date(std::int64_t seconds) {
    return Date{static_cast<double>(seconds)};
}

std::int64_t lastID(SQLiteDatabase& database) {
    const auto ids = database.query(selectLastID, {}, [](const SQLiteDatabase::Row& row) { return row.integer(0); });
    return ids.empty() ? 0 : ids.front();
}

StorageSize storageSize(const SQLiteDatabase::Row& row) {
    return {date(row.integer(0)), static_cast<std::uint64_t>(std::max<std::int64_t>(row.integer(1), 0))};
}

} // namespace

std::int64_t insertAlert(SQLiteDatabase& database, const StoredAlert& alert) {
    database.run(insertAlertRow,
                 {wholeSeconds(alert.date), alert.rule, alert.severity, alert.title, alert.body, alert.subject});
    return lastID(database);
}

std::vector<StoredAlert> alerts(SQLiteDatabase& database, std::int64_t limit) {
    return database.query(selectAlerts, {limit}, [](const SQLiteDatabase::Row& row) {
        return StoredAlert{.id = row.integer(0),
                           .date = date(row.integer(1)),
                           .rule = row.text(2).value_or(""),
                           .severity = row.text(3).value_or(""),
                           .title = row.text(4).value_or(""),
                           .body = row.text(5).value_or(""),
                           .subject = row.text(6)};
    });
}

void deleteAlerts(SQLiteDatabase& database) {
    database.run("DELETE FROM alerts", {});
}

std::int64_t insertSession(SQLiteDatabase& database, const std::string& name, std::int64_t start) {
    database.run(insertSessionRow, {name, start});
    return lastID(database);
}

void finishSession(SQLiteDatabase& database, std::int64_t id, std::int64_t end, const std::string& summaryJSON) {
    database.run(updateSession, {end, summaryJSON, id});
}

std::vector<StoredSession> sessions(SQLiteDatabase& database) {
    return database.query(selectSessions, {}, [](const SQLiteDatabase::Row& row) {
        return StoredSession{.id = row.integer(0),
                             .name = row.text(1).value_or("Session"),
                             .start = date(row.integer(2)),
                             .end = row.real(3) ? std::optional(date(row.integer(3))) : std::nullopt,
                             .summaryJSON = row.text(4)};
    });
}

void deleteSession(SQLiteDatabase& database, std::int64_t id) {
    database.run("DELETE FROM sessions WHERE id = ?", {id});
}

void insertStorage(SQLiteDatabase& database, const std::string& path, std::int64_t date, std::uint64_t bytes) {
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max(); // that a column holds
    database.run(insertStorageRow, {path, date, static_cast<std::int64_t>(std::min(bytes, most))});
}

std::vector<StorageSize> storageBaseline(SQLiteDatabase& database, const std::string& path, std::int64_t since) {
    return database.query(selectBaseline, {path, since}, storageSize);
}

std::vector<StorageSize> storageSeries(SQLiteDatabase& database, const std::string& path, std::int64_t since) {
    return database.query(selectSeries, {path, since}, storageSize);
}

} // namespace ostrivane::RecordTables
