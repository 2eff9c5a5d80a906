#include "core/history/SampleTables.hpp"

#include "core/history/SQLiteDatabase.hpp"

#include <string_view>

namespace ostrivane::SampleTables {

namespace {

constexpr std::string_view insertSystemRow =
    "INSERT OR REPLACE INTO system_samples VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)";
constexpr std::string_view insertAppRow = "INSERT OR REPLACE INTO app_samples VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?)";
constexpr std::string_view selectSystemRows =
    "SELECT * FROM system_samples WHERE bucket >= ? AND bucket <= ? ORDER BY bucket";
constexpr std::string_view selectAppRows =
    "SELECT bucket, res, app_key, cpu, cpu_max, mem, mem_max, energy_j, disk_read, disk_write, net_in, net_out, gpu, "
    "samples FROM app_samples WHERE app_key = ? AND bucket >= ? ORDER BY bucket";
// No bucket is longer than an hour; the bound lets the index find it.
constexpr std::string_view selectAppsAt =
    "SELECT app_key, COALESCE(name, app_key), cpu, mem FROM app_samples LEFT JOIN apps USING(app_key) WHERE bucket > "
    "?1 - 3600 AND bucket <= ?1 AND bucket + res > ?1 ORDER BY cpu DESC, app_key LIMIT ?2";
constexpr std::string_view selectTotals =
    "SELECT SUM(disk_read), SUM(disk_write), SUM(net_in), SUM(net_out), SUM(power_w * res) / 3600.0 FROM "
    "system_samples WHERE bucket >= ?";
constexpr std::string_view selectEarliest = "SELECT MIN(bucket) FROM system_samples";

SystemRow systemRow(const SQLiteDatabase::Row& row) {
    return {.bucket = row.integer(0),
            .res = row.integer(1),
            .cpu = row.number(2),
            .cpuMax = row.number(3),
            .cpuUser = row.number(4),
            .cpuSystem = row.number(5),
            .memUsed = row.number(6),
            .memUsedMax = row.number(7),
            .memApp = row.number(8),
            .memWired = row.number(9),
            .memCompressed = row.number(10),
            .memCached = row.number(11),
            .swapUsed = row.number(12),
            .pressure = row.number(13),
            .pressureLevelMax = row.real(14).value_or(1),
            .gpu = row.real(15),
            .gpuMax = row.real(16),
            .diskRead = row.number(17),
            .diskWrite = row.number(18),
            .netIn = row.number(19),
            .netOut = row.number(20),
            .batteryPct = row.real(21),
            .powerW = row.real(22),
            .cpuTemp = row.real(23),
            .cpuTempMax = row.real(24),
            .gpuTemp = row.real(25),
            .fanRPM = row.real(26),
            .samples = row.integer(27)};
}

AppRow appRow(const SQLiteDatabase::Row& row) {
    return {.bucket = row.integer(0),
            .res = row.integer(1),
            .appKey = row.text(2).value_or(""),
            .cpu = row.number(3),
            .cpuMax = row.number(4),
            .mem = row.number(5),
            .memMax = row.number(6),
            .energyJ = row.number(7),
            .diskRead = row.number(8),
            .diskWrite = row.number(9),
            .netIn = row.number(10),
            .netOut = row.number(11),
            .gpu = row.number(12),
            .samples = row.integer(13)};
}

} // namespace

void insert(SQLiteDatabase& database, const SystemRow& row) {
    database.run(
        insertSystemRow,
        {row.bucket,           row.res,    row.cpu,      row.cpuMax,        row.cpuUser,   row.cpuSystem, row.memUsed,
         row.memUsedMax,       row.memApp, row.memWired, row.memCompressed, row.memCached, row.swapUsed,  row.pressure,
         row.pressureLevelMax, row.gpu,    row.gpuMax,   row.diskRead,      row.diskWrite, row.netIn,     row.netOut,
         row.batteryPct,       row.powerW, row.cpuTemp,  row.cpuTempMax,    row.gpuTemp,   row.fanRPM,    row.samples});
}

void insert(SQLiteDatabase& database, const AppRow& row) {
    database.run(insertAppRow, {row.bucket, row.res, row.appKey, row.cpu, row.cpuMax, row.mem, row.memMax, row.energyJ,
                                row.diskRead, row.diskWrite, row.netIn, row.netOut, row.gpu, row.samples});
}

std::vector<SystemRow> systemRows(SQLiteDatabase& database, std::int64_t since, std::int64_t until) {
    return database.query(selectSystemRows, {since, until}, systemRow);
}

std::vector<AppRow> appRows(SQLiteDatabase& database, const std::string& key, std::int64_t since) {
    return database.query(selectAppRows, {key, since}, appRow);
}

std::vector<AppMoment> appsAt(SQLiteDatabase& database, std::int64_t second, std::int64_t limit) {
    return database.query(selectAppsAt, {second, limit}, [](const SQLiteDatabase::Row& row) {
        return AppMoment{.appKey = row.text(0).value_or(""),
                         .name = row.text(1).value_or(""),
                         .cpu = row.number(2),
                         .mem = row.number(3)};
    });
}

Totals totals(SQLiteDatabase& database, std::int64_t since) {
    const auto rows = database.query(selectTotals, {since}, [](const SQLiteDatabase::Row& row) {
        return Totals{.diskRead = row.number(0),
                      .diskWrite = row.number(1),
                      .netIn = row.number(2),
                      .netOut = row.number(3),
                      .energyWh = row.number(4)};
    });
    return rows.empty() ? Totals() : rows.front();
}

std::optional<std::int64_t> earliestBucket(SQLiteDatabase& database) {
    const auto rows = database.query(selectEarliest, {}, [](const SQLiteDatabase::Row& row) {
        return row.real(0) ? std::optional(row.integer(0)) : std::nullopt;
    });
    return rows.empty() ? std::nullopt : rows.front();
}

} // namespace ostrivane::SampleTables
