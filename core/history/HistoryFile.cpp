#include "core/history/HistoryFile.hpp"

#include "core/history/HistorySchema.hpp"

#include <filesystem>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrivane::HistoryFile {

namespace {

constexpr mode_t ownersOnly = 0600;

/// Failures show when SQLite opens the file. An existing one is not opened here: closing it would drop the locks that
/// another connection of this process holds on it.
void makeOwnersOnly(const std::string& path) {
    const int made = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, ownersOnly);
    if (made >= 0) {
        ::close(made);
        return;
    }
    struct stat facts {};
    if (::stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) && (facts.st_mode & 0777U & ~ownersOnly) != 0)
        ::chmod(path.c_str(), facts.st_mode & ownersOnly);
}

/// Without a write-ahead log nobody writes.
bool hasLog(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path + "-wal", error);
    return !error && size > 0;
}

std::unique_ptr<SQLiteDatabase> readable(const std::string& path, SQLiteDatabase::Mode mode) {
    auto database = std::make_unique<SQLiteDatabase>(path, mode);
    database->execute("PRAGMA busy_timeout=2000;"); // a writer that begins or ends holds the file for a moment
    database->execute("SELECT COUNT(*) FROM sqlite_schema;"); // SQLite looks at a file when it is first read
    // The last table that is made tells whether there are all.
    const auto tables = database->query("SELECT 1 FROM sqlite_schema WHERE name = 'storage_snapshots'", {},
                                        [](const SQLiteDatabase::Row&) { return true; });
    return tables.empty() ? nullptr : std::move(database);
}

std::int64_t rowsOf(SQLiteDatabase& database, std::string_view table) {
    std::int64_t rows = 0;
    database.each("SELECT COUNT(*) FROM " + std::string(table), {},
                  [&](const SQLiteDatabase::Row& row) { rows = row.integer(0); });
    return rows;
}

ResolutionCount& countOf(HistoryStatus& status, std::int64_t res) {
    for (ResolutionCount& known : status.resolutions)
        if (known.res == res)
            return known;
    return status.resolutions.emplace_back(ResolutionCount{.res = res});
}

} // namespace

std::unique_ptr<SQLiteDatabase> open(const std::string& path) {
    makeOwnersOnly(path);
    auto database = std::make_unique<SQLiteDatabase>(path);
    makeOwnersOnly(path);                           // what a link leads to was made by SQLite
    database->execute("PRAGMA busy_timeout=1000;"); // whoever holds the file for a moment must not cost the whole run
    database->execute(std::string(HistorySchema::script));
    database->execute(std::string(HistorySchema::sumsScript));
    database->execute("PRAGMA busy_timeout=0;");
    return database;
}

std::optional<Identity> identity(const std::string& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0)
        return std::nullopt;
    return Identity{facts.st_dev, facts.st_ino};
}

std::unique_ptr<SQLiteDatabase> openToRead(const std::string& path) {
    try {
        return readable(path, SQLiteDatabase::Mode::readOnly);
    } catch (const SQLiteError&) {
        if (hasLog(path))
            throw;
    }
    // Where nothing can be written, there is no place for the locks of readers.
    return readable(path, SQLiteDatabase::Mode::immutable);
}

void count(SQLiteDatabase& database, HistoryStatus& status) {
    database.each("SELECT MIN(bucket), MAX(bucket) FROM system_samples", {}, [&](const SQLiteDatabase::Row& row) {
        if (row.real(0)) {
            status.earliest = Date{static_cast<double>(row.integer(0))};
            status.latest = Date{static_cast<double>(row.integer(1))};
        }
    });
    database.each("SELECT res, COUNT(*) FROM system_samples GROUP BY res ORDER BY res", {},
                  [&](const SQLiteDatabase::Row& row) { countOf(status, row.integer(0)).systemRows = row.integer(1); });
    database.each("SELECT res, COUNT(*) FROM app_samples GROUP BY res ORDER BY res", {},
                  [&](const SQLiteDatabase::Row& row) { countOf(status, row.integer(0)).appRows = row.integer(1); });
    status.apps = rowsOf(database, "apps");
    status.alerts = rowsOf(database, "alerts");
    status.sessions = rowsOf(database, "sessions");
    status.storageSizes = rowsOf(database, "storage_snapshots");
}

void clear(SQLiteDatabase& database) {
    constexpr const char* tables[] = {"system_samples", "app_samples",       "apps",     "alerts",
                                      "sessions",       "storage_snapshots", "app_sums", "app_sum_spans"};
    database.transaction([&] {
        for (const char* table : tables)
            database.run("DELETE FROM " + std::string(table), {});
    });
}

void compact(SQLiteDatabase& database) {
    database.execute("VACUUM;");
    bool isHeldUp = false; // told by a row, not by an error
    database.each("PRAGMA wal_checkpoint(TRUNCATE);", {},
                  [&](const SQLiteDatabase::Row& row) { isHeldUp = row.integer(0) != 0; });
    if (isHeldUp)
        throw SQLiteError(SQLiteError::Kind::step, "another program is reading it");
}

} // namespace ostrivane::HistoryFile
