#pragma once

#include "core/history/MinuteAccumulator.hpp"

#include <sqlite3.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ostrivane {

/// The history's statements run by SQLite's C interface alone: what the store cannot be faster than by being thin.
class BareHistory {
public:
    explicit BareHistory(const std::string& path);

    void execute(const char* sql);
    void insert(const FinishedBucket& minute);
    /// One minute in one transaction.
    void write(const FinishedBucket& minute);
    std::vector<SystemRow> systemRows(std::int64_t since, std::int64_t until);
    std::vector<AppRow> appRows(const std::string& key, std::int64_t since);
    /// The keys of the applications that used most.
    std::vector<std::string> topApps(std::int64_t since, double window, std::int64_t limit);
    void maintain(std::int64_t now, std::int64_t retentionDays);

private:
    void insert(const SystemRow& row);
    void insert(const AppRow& row);
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    sqlite3_stmt* prepared(const char* sql);
    void step(sqlite3_stmt* statement);
    void runWith(const char* sql, std::int64_t first);
    void runWith(const char* sql, std::int64_t first, std::int64_t second);

    std::unique_ptr<sqlite3, Close> db;
    std::map<const char*, std::unique_ptr<sqlite3_stmt, Finalize>> statements; ///< by the address of a constant
};

} // namespace ostrivane
