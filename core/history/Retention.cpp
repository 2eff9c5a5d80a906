#include "core/history/Retention.hpp"

#include "core/history/AppSums.hpp"
#include "core/history/ResolutionLadder.hpp"
#include "core/history/SQLiteDatabase.hpp"

#include <fmt/format.h>

#include <limits>
#include <string>

namespace ostrivane::Retention {

namespace {

constexpr std::int64_t day = 86400;
constexpr std::int64_t storageDays = 90; ///< of storage sizes, whatever the retention

/// Levels are averaged over the rows that there are, traffic is summed.
std::string rollUpSystem(std::int64_t to) {
    return fmt::format(
        "INSERT OR REPLACE INTO system_samples\nSELECT (bucket / {0}) * {0}, {0},\n    AVG(cpu), MAX(cpu_max), "
        "AVG(cpu_user), AVG(cpu_sys), AVG(mem_used), MAX(mem_used_max), AVG(mem_app), AVG(mem_wired),\n    "
        "AVG(mem_compressed), AVG(mem_cached), AVG(swap_used), AVG(pressure), MAX(pressure_level_max), AVG(gpu), "
        "MAX(gpu_max),\n    SUM(disk_read), SUM(disk_write), SUM(net_in), SUM(net_out), AVG(battery_pct), "
        "AVG(power_w), AVG(cpu_temp), MAX(cpu_temp_max),\n    AVG(gpu_temp), AVG(fan_rpm), SUM(samples)\nFROM "
        "system_samples WHERE res = ? AND bucket < ? GROUP BY bucket / {0}",
        to);
}

/// An application has rows only of the minutes in which it was noticeable: its levels are divided by the time of the
/// whole bucket, so that a minute without a row counts as zero.
std::string rollUpApps(std::int64_t to, std::int64_t ratio) {
    return fmt::format(
        "INSERT OR REPLACE INTO app_samples\nSELECT (bucket / {0}) * {0}, {0}, app_key,\n    SUM(cpu) / {1}, "
        "MAX(cpu_max), SUM(mem) / {1}, MAX(mem_max), SUM(energy_j), SUM(disk_read), SUM(disk_write),\n    "
        "SUM(net_in), SUM(net_out), SUM(gpu) / {1}, SUM(samples)\nFROM app_samples WHERE res = ? AND bucket < ? "
        "GROUP BY app_key, bucket / {0}",
        to, fmt::format("{}.0", ratio));
}

void rollUp(SQLiteDatabase& database, const RollUpStep& step, std::int64_t now) {
    const std::int64_t aligned = alignedCut(now, step);
    database.run(rollUpSystem(step.to), {step.from, aligned});
    database.run("DELETE FROM system_samples WHERE res = ? AND bucket < ?", {step.from, aligned});
    database.run(rollUpApps(step.to, step.to / step.from), {step.from, aligned});
    database.run("DELETE FROM app_samples WHERE res = ? AND bucket < ?", {step.from, aligned});
    AppSums::rowsCoarsened(database, step.from, aligned);
}

/// `now` less that many days; stops at the smallest number.
std::int64_t daysBefore(std::int64_t now, std::int64_t days) {
    std::int64_t span = 0;
    std::int64_t cutoff = 0;
    if (__builtin_mul_overflow(days, day, &span) || __builtin_sub_overflow(now, span, &cutoff))
        return std::numeric_limits<std::int64_t>::min();
    return cutoff;
}

} // namespace

void maintain(SQLiteDatabase& database, std::int64_t now, std::int64_t retentionDays) {
    database.transaction([&] {
        rollUp(database, minutesToQuarters, now);
        rollUp(database, quartersToHours, now);
        const std::int64_t cutoff = daysBefore(now, retentionDays);
        database.run("DELETE FROM system_samples WHERE bucket < ?", {cutoff});
        database.run("DELETE FROM app_samples WHERE bucket < ?", {cutoff});
        database.run("DELETE FROM alerts WHERE ts < ?", {cutoff});
        database.run("DELETE FROM storage_snapshots WHERE ts < ?", {daysBefore(now, storageDays)});
        AppSums::rowsDeleted(database, cutoff);
        AppSums::refresh(database, now);
    });
    try {
        database.execute("PRAGMA wal_checkpoint(TRUNCATE);");
    } catch (const SQLiteError&) { // a reader in another process: the next run will do it
    }
}

} // namespace ostrivane::Retention
