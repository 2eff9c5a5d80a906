#pragma once

#include "core/history/SQLValue.hpp"
#include "core/history/SQLiteError.hpp"
#include "core/model/TextHash.hpp"

#include <boost/unordered/unordered_flat_map.hpp>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;      // NOLINT(readability-identifier-naming): SQLite's own names
struct sqlite3_stmt; // NOLINT(readability-identifier-naming)

namespace ostrivane {

/// One connection to a SQLite file, with its prepared statements kept by their text. Knows nothing of a schema, and has
/// no lock: its owner calls it from one thread at a time. Whatever fails throws `SQLiteError`; nothing is tried twice.
class SQLiteDatabase {
public:
    enum class Mode {
        readWrite, ///< makes the file where it is missing
        readOnly,  ///< changes nothing; reads beside a writer
        immutable  ///< the same on media where not even locks can be kept; nobody else may be writing
    };
    using Parameters = std::initializer_list<SQLValue>;

    /// The current row of a statement; valid only while it is mapped.
    class Row {
    public:
        explicit Row(sqlite3_stmt* statement) : stmt(statement) {}
        std::int64_t integer(int column) const; ///< 0 for NULL
        double number(int column) const;        ///< 0 for NULL
        std::optional<double> real(int column) const;
        std::optional<std::string> text(int column) const;
        std::string_view view(int column) const; ///< the text, empty for NULL; valid as long as the row

    private:
        sqlite3_stmt* stmt;
    };

    explicit SQLiteDatabase(const std::string& path, Mode mode = Mode::readWrite);

    /// Runs one or several statements, without parameters and without keeping them.
    void execute(const std::string& sql);

    /// Runs one statement, one step of it: a row that comes is a success like none.
    void run(std::string_view sql, Parameters parameters);

    /// Every row, as `map` makes it.
    template <class Map>
    auto query(std::string_view sql, Parameters parameters, Map map) {
        std::vector<decltype(map(std::declval<const Row&>()))> rows;
        each(sql, parameters, [&](const Row& row) { rows.push_back(map(row)); });
        return rows;
    }

    /// Calls `take` for every row.
    template <class Take>
    void each(std::string_view sql, Parameters parameters, Take take) {
        sqlite3_stmt* statement = prepared(sql);
        bind(statement, parameters);
        while (step(statement))
            take(Row(statement));
    }

    /// Runs `body` with the lock of the writer; what it throws undoes what it did, and is thrown again.
    void transaction(const std::function<void()>& body);

    /// Runs `body`, which only reads, on one state of the file, whatever another process writes meanwhile.
    void reading(const std::function<void()>& body);

    /// Bytes of the file and its write-ahead log; what cannot be read adds nothing.
    std::uint64_t fileSize() const;

private:
    struct Close {
        void operator()(sqlite3* handle) const;
    };
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

    sqlite3_stmt* prepared(std::string_view sql);
    static void bind(sqlite3_stmt* statement, Parameters parameters);
    bool step(sqlite3_stmt* statement); ///< true for a row
    void between(const char* begin, const std::function<void()>& body);
    std::string message() const;

    std::unique_ptr<sqlite3, Close> db;
    /// By the exact text. Never trimmed; finalised before the connection closes, as it stands behind it.
    boost::unordered_flat_map<std::string, Statement, TextHash, std::equal_to<>> statements;
};

} // namespace ostrivane
