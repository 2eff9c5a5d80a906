#include "bench/BareHistory.hpp"

#include "core/history/HistorySchema.hpp"

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace ostrivane {

namespace {

constexpr const char* systemInsert =
    "INSERT OR REPLACE INTO system_samples VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)";
constexpr const char* appInsert = "INSERT OR REPLACE INTO app_samples VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?)";
constexpr const char* systemSelect = "SELECT * FROM system_samples WHERE bucket >= ? AND bucket <= ? ORDER BY bucket";
constexpr const char* appSelect =
    "SELECT bucket, res, app_key, cpu, cpu_max, mem, mem_max, energy_j, disk_read, disk_write, net_in, net_out, gpu, "
    "samples FROM app_samples WHERE app_key = ? AND bucket >= ? ORDER BY bucket";
constexpr const char* topSelect =
    "SELECT s.app_key, COALESCE(a.name, s.app_key), a.bundle_id,\n       SUM(s.cpu * s.res) / ?, MAX(s.mem_max), "
    "SUM(s.mem * s.res) / SUM(s.res), SUM(s.energy_j), SUM(s.disk_write), SUM(s.disk_read),\n       SUM(s.net_in), "
    "SUM(s.net_out), SUM(s.res) / 60.0\nFROM app_samples s LEFT JOIN apps a ON a.app_key = s.app_key\nWHERE s.bucket "
    ">= ? GROUP BY s.app_key ORDER BY SUM(s.cpu * s.res) DESC LIMIT ?";

constexpr const char* systemToQuarters =
    "INSERT OR REPLACE INTO system_samples\nSELECT (bucket / 900) * 900, 900,\n    AVG(cpu), MAX(cpu_max), "
    "AVG(cpu_user), AVG(cpu_sys), AVG(mem_used), MAX(mem_used_max), AVG(mem_app), AVG(mem_wired),\n    "
    "AVG(mem_compressed), AVG(mem_cached), AVG(swap_used), AVG(pressure), MAX(pressure_level_max), AVG(gpu), "
    "MAX(gpu_max),\n    SUM(disk_read), SUM(disk_write), SUM(net_in), SUM(net_out), AVG(battery_pct), AVG(power_w), "
    "AVG(cpu_temp), MAX(cpu_temp_max),\n    AVG(gpu_temp), AVG(fan_rpm), SUM(samples)\nFROM system_samples WHERE res = "
    "? AND bucket < ? GROUP BY bucket / 900";
constexpr const char* systemToHours =
    "INSERT OR REPLACE INTO system_samples\nSELECT (bucket / 3600) * 3600, 3600,\n    AVG(cpu), MAX(cpu_max), "
    "AVG(cpu_user), AVG(cpu_sys), AVG(mem_used), MAX(mem_used_max), AVG(mem_app), AVG(mem_wired),\n    "
    "AVG(mem_compressed), AVG(mem_cached), AVG(swap_used), AVG(pressure), MAX(pressure_level_max), AVG(gpu), "
    "MAX(gpu_max),\n    SUM(disk_read), SUM(disk_write), SUM(net_in), SUM(net_out), AVG(battery_pct), AVG(power_w), "
    "AVG(cpu_temp), MAX(cpu_temp_max),\n    AVG(gpu_temp), AVG(fan_rpm), SUM(samples)\nFROM system_samples WHERE res = "
    "? AND bucket < ? GROUP BY bucket / 3600";
constexpr const char* systemDelete = "DELETE FROM system_samples WHERE res = ? AND bucket < ?";
constexpr const char* appsToQuarters =
    "INSERT OR REPLACE INTO app_samples\nSELECT (bucket / 900) * 900, 900, app_key,\n    SUM(cpu) / 15.0, "
    "MAX(cpu_max), SUM(mem) / 15.0, MAX(mem_max), SUM(energy_j), SUM(disk_read), SUM(disk_write),\n    SUM(net_in), "
    "SUM(net_out), SUM(gpu) / 15.0, SUM(samples)\nFROM app_samples WHERE res = ? AND bucket < ? GROUP BY app_key, "
    "bucket / 900";
constexpr const char* appsToHours =
    "INSERT OR REPLACE INTO app_samples\nSELECT (bucket / 3600) * 3600, 3600, app_key,\n    SUM(cpu) / 4.0, "
    "MAX(cpu_max), SUM(mem) / 4.0, MAX(mem_max), SUM(energy_j), SUM(disk_read), SUM(disk_write),\n    SUM(net_in), "
    "SUM(net_out), SUM(gpu) / 4.0, SUM(samples)\nFROM app_samples WHERE res = ? AND bucket < ? GROUP BY app_key, "
    "bucket / 3600";
constexpr const char* appsDelete = "DELETE FROM app_samples WHERE res = ? AND bucket < ?";
constexpr const char* systemExpire = "DELETE FROM system_samples WHERE bucket < ?";
constexpr const char* appsExpire = "DELETE FROM app_samples WHERE bucket < ?";
constexpr const char* alertsExpire = "DELETE FROM alerts WHERE ts < ?";
constexpr const char* storageExpire = "DELETE FROM storage_snapshots WHERE ts < ?";

void bindOptional(sqlite3_stmt* statement, int index, const std::optional<double>& value) {
    if (value)
        sqlite3_bind_double(statement, index, *value);
    else
        sqlite3_bind_null(statement, index);
}

std::optional<double> optionalAt(sqlite3_stmt* statement, int column) {
    if (sqlite3_column_type(statement, column) == SQLITE_NULL)
        return std::nullopt;
    return sqlite3_column_double(statement, column);
}

std::string textAt(sqlite3_stmt* statement, int column) {
    const unsigned char* text = sqlite3_column_text(statement, column);
    return text == nullptr ? std::string() : reinterpret_cast<const char*>(text); // NOLINT: SQLite's text is bytes
}

} // namespace

BareHistory::BareHistory(const std::string& path) {
    sqlite3* handle = nullptr;
    const int code = sqlite3_open(path.c_str(), &handle);
    db.reset(handle);
    if (code != SQLITE_OK) {
        std::fprintf(stderr, "%s: %s\n", path.c_str(), sqlite3_errmsg(handle));
        std::exit(1);
    }
    execute("PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;");
    execute(std::string(HistorySchema::script).c_str());
}

void BareHistory::execute(const char* sql) {
    if (sqlite3_exec(db.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "%s: %s\n", sql, sqlite3_errmsg(db.get()));
        std::exit(1);
    }
}

sqlite3_stmt* BareHistory::prepared(const char* sql) {
    auto& statement = statements[sql];
    if (!statement) {
        sqlite3_stmt* handle = nullptr;
        if (sqlite3_prepare_v2(db.get(), sql, -1, &handle, nullptr) != SQLITE_OK) {
            std::fprintf(stderr, "%s: %s\n", sql, sqlite3_errmsg(db.get()));
            std::exit(1);
        }
        statement.reset(handle);
    }
    sqlite3_reset(statement.get());
    return statement.get();
}

void BareHistory::step(sqlite3_stmt* statement) {
    if (sqlite3_step(statement) != SQLITE_DONE) {
        std::fprintf(stderr, "%s\n", sqlite3_errmsg(db.get()));
        std::exit(1);
    }
}

void BareHistory::insert(const SystemRow& row) {
    sqlite3_stmt* statement = prepared(systemInsert);
    sqlite3_bind_int64(statement, 1, row.bucket);
    sqlite3_bind_int64(statement, 2, row.res);
    const double levels[] = {row.cpu,        row.cpuMax,   row.cpuUser,         row.cpuSystem,     row.memUsed,
                             row.memUsedMax, row.memApp,   row.memWired,        row.memCompressed, row.memCached,
                             row.swapUsed,   row.pressure, row.pressureLevelMax};
    int index = 3;
    for (const double level : levels)
        sqlite3_bind_double(statement, index++, level);
    bindOptional(statement, index++, row.gpu);
    bindOptional(statement, index++, row.gpuMax);
    for (const double traffic : {row.diskRead, row.diskWrite, row.netIn, row.netOut})
        sqlite3_bind_double(statement, index++, traffic);
    for (const auto& value : {row.batteryPct, row.powerW, row.cpuTemp, row.cpuTempMax, row.gpuTemp, row.fanRPM})
        bindOptional(statement, index++, value);
    sqlite3_bind_int64(statement, index, row.samples);
    step(statement);
}

void BareHistory::insert(const AppRow& row) {
    sqlite3_stmt* statement = prepared(appInsert);
    sqlite3_bind_int64(statement, 1, row.bucket);
    sqlite3_bind_int64(statement, 2, row.res);
    sqlite3_bind_text(statement, 3, row.appKey.c_str(), -1, SQLITE_TRANSIENT);
    int index = 4;
    for (const double value : {row.cpu, row.cpuMax, row.mem, row.memMax, row.energyJ, row.diskRead, row.diskWrite,
                               row.netIn, row.netOut, row.gpu})
        sqlite3_bind_double(statement, index++, value);
    sqlite3_bind_int64(statement, index, row.samples);
    step(statement);
}

void BareHistory::insert(const FinishedBucket& minute) {
    insert(minute.system);
    for (const AppRow& row : minute.apps)
        insert(row);
}

void BareHistory::write(const FinishedBucket& minute) {
    execute("BEGIN IMMEDIATE;");
    insert(minute);
    execute("COMMIT;");
}

std::vector<SystemRow> BareHistory::systemRows(std::int64_t since, std::int64_t until) {
    sqlite3_stmt* row = prepared(systemSelect);
    sqlite3_bind_int64(row, 1, since);
    sqlite3_bind_int64(row, 2, until);
    std::vector<SystemRow> rows;
    const auto real = [&](int column) { return sqlite3_column_double(row, column); };
    while (sqlite3_step(row) == SQLITE_ROW)
        rows.push_back({sqlite3_column_int64(row, 0),
                        sqlite3_column_int64(row, 1),
                        real(2),
                        real(3),
                        real(4),
                        real(5),
                        real(6),
                        real(7),
                        real(8),
                        real(9),
                        real(10),
                        real(11),
                        real(12),
                        real(13),
                        real(14),
                        optionalAt(row, 15),
                        optionalAt(row, 16),
                        real(17),
                        real(18),
                        real(19),
                        real(20),
                        optionalAt(row, 21),
                        optionalAt(row, 22),
                        optionalAt(row, 23),
                        optionalAt(row, 24),
                        optionalAt(row, 25),
                        optionalAt(row, 26),
                        sqlite3_column_int64(row, 27)});
    return rows;
}

std::vector<AppRow> BareHistory::appRows(const std::string& key, std::int64_t since) {
    sqlite3_stmt* row = prepared(appSelect);
    sqlite3_bind_text(row, 1, key.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_int64(row, 2, since);
    std::vector<AppRow> rows;
    const auto real = [&](int column) { return sqlite3_column_double(row, column); };
    while (sqlite3_step(row) == SQLITE_ROW)
        rows.push_back({sqlite3_column_int64(row, 0), sqlite3_column_int64(row, 1), textAt(row, 2), real(3), real(4),
                        real(5), real(6), real(7), real(8), real(9), real(10), real(11), real(12),
                        sqlite3_column_int64(row, 13)});
    return rows;
}

std::vector<std::string> BareHistory::topApps(std::int64_t since, double window, std::int64_t limit) {
    sqlite3_stmt* row = prepared(topSelect);
    sqlite3_bind_double(row, 1, window);
    sqlite3_bind_int64(row, 2, since);
    sqlite3_bind_int64(row, 3, limit);
    std::vector<std::string> keys;
    while (sqlite3_step(row) == SQLITE_ROW)
        keys.push_back(textAt(row, 0));
    return keys;
}

void BareHistory::runWith(const char* sql, std::int64_t first) {
    sqlite3_stmt* statement = prepared(sql);
    sqlite3_bind_int64(statement, 1, first);
    step(statement);
}

void BareHistory::runWith(const char* sql, std::int64_t first, std::int64_t second) {
    sqlite3_stmt* statement = prepared(sql);
    sqlite3_bind_int64(statement, 1, first);
    sqlite3_bind_int64(statement, 2, second);
    step(statement);
}

void BareHistory::maintain(std::int64_t now, std::int64_t retentionDays) {
    const std::int64_t quarters = (now - 86400) / 900 * 900;
    const std::int64_t hours = (now - 604800) / 3600 * 3600;
    const std::int64_t cutoff = now - retentionDays * 86400;
    execute("BEGIN IMMEDIATE;");
    runWith(systemToQuarters, 60, quarters);
    runWith(systemDelete, 60, quarters);
    runWith(appsToQuarters, 60, quarters);
    runWith(appsDelete, 60, quarters);
    runWith(systemToHours, 900, hours);
    runWith(systemDelete, 900, hours);
    runWith(appsToHours, 900, hours);
    runWith(appsDelete, 900, hours);
    runWith(systemExpire, cutoff);
    runWith(appsExpire, cutoff);
    runWith(alertsExpire, cutoff);
    runWith(storageExpire, now - 90 * 86400);
    execute("COMMIT;");
    execute("PRAGMA wal_checkpoint(TRUNCATE);");
}

} // namespace ostrivane
