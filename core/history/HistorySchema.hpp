#pragma once

#include <string_view>

namespace ostrivane::HistorySchema {

/// The tables of the history, made on every open where they are missing. `bucket` and `ts` are whole seconds since
/// 1970, `res` the length of a bucket in seconds. `meta` is written once; there are no migrations.
inline constexpr std::string_view script =
    R"(CREATE TABLE IF NOT EXISTS meta(key TEXT PRIMARY KEY, value TEXT);
CREATE TABLE IF NOT EXISTS system_samples(
    bucket INTEGER NOT NULL, res INTEGER NOT NULL,
    cpu REAL, cpu_max REAL, cpu_user REAL, cpu_sys REAL,
    mem_used REAL, mem_used_max REAL, mem_app REAL, mem_wired REAL, mem_compressed REAL, mem_cached REAL,
    swap_used REAL, pressure REAL, pressure_level_max REAL,
    gpu REAL, gpu_max REAL, disk_read REAL, disk_write REAL, net_in REAL, net_out REAL,
    battery_pct REAL, power_w REAL, cpu_temp REAL, cpu_temp_max REAL, gpu_temp REAL, fan_rpm REAL, samples INTEGER,
    PRIMARY KEY(bucket, res));
CREATE TABLE IF NOT EXISTS apps(app_key TEXT PRIMARY KEY, name TEXT NOT NULL, bundle_id TEXT, last_seen INTEGER);
CREATE TABLE IF NOT EXISTS app_samples(
    bucket INTEGER NOT NULL, res INTEGER NOT NULL, app_key TEXT NOT NULL,
    cpu REAL, cpu_max REAL, mem REAL, mem_max REAL, energy_j REAL, disk_read REAL, disk_write REAL,
    net_in REAL, net_out REAL, gpu REAL, samples INTEGER,
    PRIMARY KEY(app_key, bucket, res));
CREATE INDEX IF NOT EXISTS app_samples_bucket ON app_samples(bucket);
CREATE TABLE IF NOT EXISTS alerts(id INTEGER PRIMARY KEY AUTOINCREMENT, ts INTEGER, rule TEXT, severity TEXT, title TEXT, body TEXT, subject TEXT);
CREATE INDEX IF NOT EXISTS alerts_ts ON alerts(ts);
CREATE TABLE IF NOT EXISTS sessions(id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT, start INTEGER, end INTEGER, summary TEXT);
CREATE TABLE IF NOT EXISTS storage_snapshots(path TEXT, ts INTEGER, bytes INTEGER, PRIMARY KEY(path, ts));
INSERT OR IGNORE INTO meta(key, value) VALUES('schema', '1');)";

/// Sums of `app_samples` over past spans of time, from which rankings over long periods are made quickly (`AppSums`).
/// Nothing is lost when they are missing.
inline constexpr std::string_view sumsScript =
    R"(CREATE TABLE IF NOT EXISTS app_sum_spans(start INTEGER PRIMARY KEY, end INTEGER NOT NULL, finest INTEGER);
CREATE TABLE IF NOT EXISTS app_sums(
    start INTEGER NOT NULL, app_key TEXT NOT NULL,
    cpu_s REAL, mem_max REAL, mem_s REAL, energy_j REAL, disk_write REAL, disk_read REAL,
    net_in REAL, net_out REAL, covered_s INTEGER,
    PRIMARY KEY(start, app_key)) WITHOUT ROWID;)";

} // namespace ostrivane::HistorySchema
