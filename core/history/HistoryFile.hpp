#pragma once

#include "core/history/HistoryStatus.hpp"
#include "core/history/SQLiteDatabase.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace ostrivane {

/// The history as one file: how it is opened, counted and emptied. Each throws as the database does.
namespace HistoryFile {

/// Opens the file to write, made with mode 0600 and with its tables where they are missing. Another mode of an existing
/// one is narrowed: what runs on a machine is nobody else's business.
std::unique_ptr<SQLiteDatabase> open(const std::string& path);

/// Which file stands under a name, so that another one, or none, in its place is noticed.
struct Identity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;

    friend bool operator==(const Identity&, const Identity&) = default;
};

/// Absent when nothing stands there.
std::optional<Identity> identity(const std::string& path);

/// Opens the file to read it, beside a writer in another process or where nothing can be written. Null for one in which
/// there is no history yet.
std::unique_ptr<SQLiteDatabase> openToRead(const std::string& path);

/// Adds what the tables hold to `status`, one after the other: what was read stands when one fails.
void count(SQLiteDatabase& database, HistoryStatus& status);

/// Deletes everything, in one transaction.
void clear(SQLiteDatabase& database);

/// Gives the space of deleted rows back, and overwrites what the write-ahead log still holds of them.
void compact(SQLiteDatabase& database);

} // namespace HistoryFile
} // namespace ostrivane
