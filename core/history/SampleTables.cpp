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
constexpr std::string_view selectTotals =
    "SELECT SUM(disk_read), SUM(disk_write), SUM(net_in), SUM(net_out), SUM(power_w * res) / 3600.0 FROM "
    "system_samples WHERE bucket >= ?";
constexpr std::string_view selectEarliest = "SELECT MIN(bucket) FROM system_samples";

double zeroForNull(const SQLiteDatabase::Row& row, int column) {
    return row.real(column).value_or(0);
}

SystemRow systemRow(const SQLiteDatabase::Row& row) {
    return {.bucket = row.integer(0),
            .res = row.integer(1),
            .cpu = zeroForNull(row, 2),
            .cpuMax = zeroForNull(row, 3),
            .cpuUser = zeroForNull(row, 4),
            .cpuSystem = zeroForNull(row, 5),
            .memUsed = zeroForNull(row, 6),
            .memUsedMax = zeroForNull(row, 7),
            .memApp = zeroForNull(row, 8),
            .memWired = zeroForNull(row, 9),
            .memCompressed = zeroForNull(row, 10),
            .memCached = zeroForNull(row, 11),
            .swapUsed = zeroForNull(row, 12),
            .pressure = zeroForNull(row, 13),
            .pressureLevelMax = row.real(14).value_or(1),
            .gpu = row.real(15),
            .gpuMax = row.real(16),
            .diskRead = zeroForNull(row, 17),
            .diskWrite = zeroForNull(row, 18),
            .netIn = zeroForNull(row, 19),
            .netOut = zeroForNull(row, 20),
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
            .cpu = zeroForNull(row, 3),
            .cpuMax = zeroForNull(row, 4),
            .mem = zeroForNull(row, 5),
            .memMax = zeroForNull(row, 6),
            .energyJ = zeroForNull(row, 7),
            .diskRead = zeroForNull(row, 8),
            .diskWrite = zeroForNull(row, 9),
            .netIn = zeroForNull(row, 10),
            .netOut = zeroForNull(row, 11),
            .gpu = zeroForNull(row, 12),
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

Totals totals(SQLiteDatabase& database, std::int64_t since) {
    const auto rows = database.query(selectTotals, {since}, [](const SQLiteDatabase::Row& row) {
        return Totals{.diskRead = zeroForNull(row, 0),
                      .diskWrite = zeroForNull(row, 1),
                      .netIn = zeroForNull(row, 2),
                      .netOut = zeroForNull(row, 3),
                      .energyWh = zeroForNull(row, 4)};
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
