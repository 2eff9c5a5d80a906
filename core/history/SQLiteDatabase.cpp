#include "core/history/SQLiteDatabase.hpp"

#include <sqlite3.h>

#include <cmath>
#include <filesystem>
#include <system_error>
#include <type_traits>

namespace ostrivane {

namespace {

int openFlags(SQLiteDatabase::Mode mode) {
    switch (mode) {
    case SQLiteDatabase::Mode::readWrite:
        return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
    case SQLiteDatabase::Mode::readOnly:
        return SQLITE_OPEN_READONLY | SQLITE_OPEN_FULLMUTEX;
    case SQLiteDatabase::Mode::immutable:
        return SQLITE_OPEN_READONLY | SQLITE_OPEN_FULLMUTEX | SQLITE_OPEN_URI;
    }
    return 0;
}

/// The address of a file that nobody changes, as SQLite wants it; what has a meaning in an address is written as "%41".
std::string immutableAddress(const std::string& path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string address = "file:";
    for (const char letter : path) {
        const auto byte = static_cast<unsigned char>(letter);
        if (letter == '%' || letter == '?' || letter == '#')
            address.append({'%', digits[byte >> 4U], digits[byte & 15U]});
        else
            address.push_back(letter);
    }
    return address + "?immutable=1";
}

std::uint64_t sizeOf(const std::string& file) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    return error ? 0 : size;
}

} // namespace

void SQLiteDatabase::Close::operator()(sqlite3* handle) const {
    sqlite3_close(handle);
}

void SQLiteDatabase::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

SQLiteDatabase::SQLiteDatabase(const std::string& path, Mode mode) {
    const std::string name = mode == Mode::immutable ? immutableAddress(path) : path;
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(name.c_str(), &handle, openFlags(mode), nullptr);
    db.reset(handle); // owned before the check: a failed open hands out a handle too
    if (code != SQLITE_OK)
        throw SQLiteError(SQLiteError::Kind::open, handle != nullptr ? message() : "unknown");
    if (mode != Mode::readWrite)
        return;
    execute("PRAGMA journal_mode=WAL;");
    execute("PRAGMA synchronous=NORMAL;");
    execute("PRAGMA foreign_keys=ON;");
}

void SQLiteDatabase::execute(const std::string& sql) {
    char* words = nullptr;
    if (sqlite3_exec(db.get(), sql.c_str(), nullptr, nullptr, &words) == SQLITE_OK)
        return;
    const std::unique_ptr<char, decltype(&sqlite3_free)> owner(words, sqlite3_free);
    throw SQLiteError(SQLiteError::Kind::step, words != nullptr ? words : "exec failed");
}

void SQLiteDatabase::run(std::string_view sql, Parameters parameters) {
    sqlite3_stmt* statement = prepared(sql);
    bind(statement, parameters);
    step(statement);
}

void SQLiteDatabase::transaction(const std::function<void()>& body) {
    between("BEGIN IMMEDIATE;", body);
}

void SQLiteDatabase::reading(const std::function<void()>& body) {
    between("BEGIN;", body);
}

void SQLiteDatabase::between(const char* begin, const std::function<void()>& body) {
    execute(begin);
    try {
        body();
        execute("COMMIT;");
    } catch (...) {
        try {
            execute("ROLLBACK;");
        } catch (const SQLiteError&) { // a full disk may have rolled back already: the first error is what counts
        }
        throw;
    }
}

std::uint64_t SQLiteDatabase::fileSize() const {
    const char* file = sqlite3_db_filename(db.get(), "main");
    if (file == nullptr || *file == '\0')
        return 0;
    return sizeOf(file) + sizeOf(std::string(file) + "-wal");
}

sqlite3_stmt* SQLiteDatabase::prepared(std::string_view sql) {
    if (const auto known = statements.find(sql); known != statements.end()) {
        sqlite3_reset(known->second.get());
        sqlite3_clear_bindings(known->second.get());
        return known->second.get();
    }
    const std::string text(sql);
    sqlite3_stmt* handle = nullptr;
    if (sqlite3_prepare_v2(db.get(), text.c_str(), -1, &handle, nullptr) != SQLITE_OK || handle == nullptr)
        throw SQLiteError(SQLiteError::Kind::prepare, message() + ": " + text);
    statements.emplace(text, Statement(handle));
    return handle;
}

void SQLiteDatabase::bind(sqlite3_stmt* statement, Parameters parameters) {
    int index = 0;
    for (const SQLValue& parameter : parameters) {
        ++index;
        std::visit(
            [&](const auto& value) {
                using Value = std::decay_t<decltype(value)>;
                if constexpr (std::is_same_v<Value, std::int64_t>) {
                    sqlite3_bind_int64(statement, index, value);
                } else if constexpr (std::is_same_v<Value, double>) {
                    if (std::isfinite(value))
                        sqlite3_bind_double(statement, index, value);
                    else // no such number ever reaches the file
                        sqlite3_bind_null(statement, index);
                } else if constexpr (std::is_same_v<Value, std::string>) {
                    sqlite3_bind_text(statement, index, value.c_str(), -1, SQLITE_TRANSIENT);
                } else {
                    sqlite3_bind_null(statement, index);
                }
            },
            parameter.value);
    }
}

bool SQLiteDatabase::step(sqlite3_stmt* statement) {
    const int code = sqlite3_step(statement);
    if (code == SQLITE_ROW || code == SQLITE_DONE)
        return code == SQLITE_ROW;
    SQLiteError error(SQLiteError::Kind::step, message());
    sqlite3_reset(statement); // one that stopped at a lock counts as running, and no transaction could end beside it
    throw error;              // NOLINT(misc-throw-by-value-catch-by-reference): made before the reset changes the words
}

std::string SQLiteDatabase::message() const {
    return sqlite3_errmsg(db.get());
}

std::int64_t SQLiteDatabase::Row::integer(int column) const {
    return sqlite3_column_int64(stmt, column);
}

double SQLiteDatabase::Row::number(int column) const {
    return sqlite3_column_double(stmt, column);
}

std::optional<double> SQLiteDatabase::Row::real(int column) const {
    if (sqlite3_column_type(stmt, column) == SQLITE_NULL)
        return std::nullopt;
    return sqlite3_column_double(stmt, column);
}

std::optional<std::string> SQLiteDatabase::Row::text(int column) const {
    const unsigned char* bytes = sqlite3_column_text(stmt, column);
    if (bytes == nullptr)
        return std::nullopt;
    return std::string(reinterpret_cast<const char*>(bytes)); // NOLINT: SQLite's text is bytes
}

std::string_view SQLiteDatabase::Row::view(int column) const {
    const unsigned char* bytes = sqlite3_column_text(stmt, column);
    return bytes == nullptr ? std::string_view()
                            : std::string_view(reinterpret_cast<const char*>(bytes)); // NOLINT: as above
}

} // namespace ostrivane
