#include "core/history/AppSums.hpp"

#include "core/history/ResolutionLadder.hpp"
#include "core/history/SQLiteDatabase.hpp"

#include <boost/unordered/unordered_flat_map.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

namespace ostrivane::AppSums {

namespace {

constexpr std::int64_t hour = 3600;
constexpr std::int64_t day = 86400;
constexpr std::int64_t mostDays = 4000; ///< that sums are made of
constexpr int mostSpansARun = 12;       ///< so that the first run over an old file takes hardly longer for them

constexpr std::string_view insertSums =
    "INSERT OR REPLACE INTO app_sums SELECT ?, app_key, SUM(cpu * res), MAX(mem_max), SUM(mem * res), SUM(energy_j), "
    "SUM(disk_write), SUM(disk_read), SUM(net_in), SUM(net_out), SUM(res) FROM app_samples WHERE bucket >= ? AND "
    "bucket "
    "< ? GROUP BY app_key";
constexpr std::string_view insertSpan = "INSERT INTO app_sum_spans VALUES(?,?,?)";
constexpr std::string_view selectTable = "SELECT 1 FROM sqlite_schema WHERE name = 'app_sum_spans'";
constexpr std::string_view selectSpans = "SELECT start, end FROM app_sum_spans WHERE start >= ? ORDER BY start";
constexpr std::string_view selectLastSpan =
    "SELECT start, end FROM app_sum_spans WHERE start <= ? ORDER BY start DESC LIMIT 1";
constexpr std::string_view selectSums = "SELECT app_key, cpu_s, mem_max, mem_s, energy_j, disk_write, disk_read, "
                                        "net_in, net_out, covered_s FROM app_sums WHERE start = ?";
constexpr std::string_view selectRows = "SELECT app_key, cpu * res, mem_max, mem * res, energy_j, disk_write, "
                                        "disk_read, net_in, net_out, res FROM app_samples WHERE bucket >= ? AND bucket "
                                        "<= ?";
constexpr std::string_view selectName = "SELECT name, bundle_id FROM apps WHERE app_key = ?";
constexpr std::string_view selectEarliest = "SELECT MIN(bucket) FROM app_samples";

struct Span {
    std::int64_t start = 0;
    std::int64_t end = 0; ///< the first second behind it

    bool holds(std::int64_t second) const { return start <= second && second < end; }
};

struct Sums {
    double cpuSeconds = 0;
    double memMax = 0;
    double memSeconds = 0; ///< bytes times seconds
    double energyJ = 0;
    double diskWrite = 0;
    double diskRead = 0;
    double netIn = 0;
    double netOut = 0;
    double coveredSeconds = 0;
};

using SumsByKey = boost::unordered_flat_map<std::string, Sums>;

Span span(const SQLiteDatabase::Row& row) {
    return {row.integer(0), row.integer(1)};
}

/// Adds every row of a statement with the columns of `selectSums`.
void add(SumsByKey& sums, SQLiteDatabase& database, std::string_view statement, SQLiteDatabase::Parameters parameters) {
    std::string key;
    database.each(statement, parameters, [&](const SQLiteDatabase::Row& row) {
        key.assign(row.view(0));
        Sums& of = sums[key];
        of.cpuSeconds += row.number(1);
        of.memMax = std::max(of.memMax, row.number(2));
        of.memSeconds += row.number(3);
        of.energyJ += row.number(4);
        of.diskWrite += row.number(5);
        of.diskRead += row.number(6);
        of.netIn += row.number(7);
        of.netOut += row.number(8);
        of.coveredSeconds += row.number(9);
    });
}

/// The spans that have sums; none in a file that no writer has opened since they were thought of.
std::vector<Span> keptSpans(SQLiteDatabase& database, std::int64_t since) {
    if (database.query(selectTable, {}, [](const SQLiteDatabase::Row&) { return true; }).empty())
        return {};
    return database.query(selectSpans, {since}, span);
}

SumsByKey sumsSince(SQLiteDatabase& database, std::int64_t since) {
    SumsByKey sums;
    std::int64_t from = since;
    for (const Span& kept : keptSpans(database, since)) {
        if (kept.start > from)
            add(sums, database, selectRows, {from, kept.start - 1});
        add(sums, database, selectSums, {kept.start});
        from = kept.end;
    }
    add(sums, database, selectRows, {from, std::numeric_limits<std::int64_t>::max()});
    return sums;
}

AppUsageSummary summary(SQLiteDatabase& database, const std::string& key, const Sums& sums, double window) {
    AppUsageSummary made{.appKey = key,
                         .name = key,
                         .bundleID = std::nullopt,
                         .avgCPU = sums.cpuSeconds / window,
                         .peakMemory = sums.memMax,
                         .avgMemory = sums.coveredSeconds > 0 ? sums.memSeconds / sums.coveredSeconds : 0,
                         .energyJ = sums.energyJ,
                         .diskWrite = sums.diskWrite,
                         .diskRead = sums.diskRead,
                         .netIn = sums.netIn,
                         .netOut = sums.netOut,
                         .activeMinutes = sums.coveredSeconds / 60};
    database.each(selectName, {key}, [&](const SQLiteDatabase::Row& row) {
        made.name = row.text(0).value_or(key);
        made.bundleID = row.text(1);
    });
    return made;
}

/// Drops the spans that `condition` finds by its two parameters.
void drop(SQLiteDatabase& database, std::string_view condition, std::int64_t first, std::int64_t second) {
    const std::string chosen(condition);
    database.run("DELETE FROM app_sums WHERE start IN (SELECT start FROM app_sum_spans WHERE " + chosen + ")",
                 {first, second});
    database.run("DELETE FROM app_sum_spans WHERE " + chosen, {first, second});
}

/// The spans that there should be, in the order of time.
std::vector<Span> wanted(std::int64_t earliest, std::int64_t now) {
    const std::int64_t minutesFrom = alignedCut(now, minutesToQuarters);
    const std::int64_t quartersFrom = alignedCut(now, quartersToHours);
    std::vector<Span> list;
    // A span in which rows are being made coarser changes with every roll-up, and so does the one that is being
    // deleted.
    const auto take = [&](Span candidate) {
        const auto divides = [&](std::int64_t cut) { return candidate.start < cut && candidate.holds(cut); };
        if (!divides(minutesFrom) && !divides(quartersFrom) && !divides(earliest))
            list.push_back(candidate);
    };
    // Of a row from a time when the clock was years off, its own time has no sums.
    std::int64_t start = std::max(earliest, now - mostDays * day) / day * day;
    for (; start + day <= minutesFrom; start += day)
        take({start, start + day});
    for (; start + hour <= now; start += hour)
        take({start, start + hour});
    return list;
}

std::int64_t finestRes(const Span& made, std::int64_t now) {
    if (made.end > alignedCut(now, minutesToQuarters))
        return minutesToQuarters.from;
    return made.end > alignedCut(now, quartersToHours) ? quartersToHours.from : quartersToHours.to;
}

} // namespace

std::vector<AppUsageSummary> top(SQLiteDatabase& database, std::int64_t since, double window, std::int64_t limit) {
    std::vector<AppUsageSummary> list;
    database.reading([&] {
        const SumsByKey sums = sumsSince(database, since);
        std::vector<const SumsByKey::value_type*> order;
        for (const auto& entry : sums)
            order.push_back(&entry);
        // The absurd figures of a damaged file may add up to what is no number; it has no place in an order.
        const auto rank = [](const Sums& of) { return std::isnan(of.cpuSeconds) ? 0 : -of.cpuSeconds; };
        std::ranges::sort(order, [&](const auto* a, const auto* b) {
            return std::pair(rank(a->second), std::string_view(a->first)) <
                   std::pair(rank(b->second), std::string_view(b->first));
        });
        if (limit >= 0 && static_cast<std::uint64_t>(limit) < order.size())
            order.resize(static_cast<std::size_t>(limit));
        for (const auto* entry : order)
            list.push_back(summary(database, entry->first, entry->second, window));
    });
    return list;
}

void rowsCame(SQLiteDatabase& database, std::int64_t first, std::int64_t last) {
    // In ordinary life rows come behind every span, and one look tells.
    const auto behind = database.query(selectLastSpan, {last}, span);
    if (!behind.empty() && behind.front().end > first)
        drop(database, "start <= ? AND end > ?", last, first);
}

void rowsCoarsened(SQLiteDatabase& database, std::int64_t res, std::int64_t aligned) {
    drop(database, "finest = ? AND start < ?", res, aligned);
}

void rowsDeleted(SQLiteDatabase& database, std::int64_t cutoff) {
    drop(database, "start >= ? AND start < ?", std::numeric_limits<std::int64_t>::min(), cutoff);
}

void refresh(SQLiteDatabase& database, std::int64_t now) {
    const auto earliest = database.query(selectEarliest, {}, [](const SQLiteDatabase::Row& row) {
        return row.real(0) ? row.integer(0) : std::numeric_limits<std::int64_t>::max();
    });
    if (earliest.empty() || earliest.front() >= now)
        return;
    std::vector<Span> list = wanted(earliest.front(), now);
    std::ranges::reverse(list);
    const std::vector<Span> kept = database.query(selectSpans, {std::numeric_limits<std::int64_t>::min()}, span);
    int made = 0;
    for (const Span& missing : list) {
        const auto same = [&](const Span& other) { return other.start == missing.start && other.end == missing.end; };
        if (std::ranges::any_of(kept, same))
            continue;
        if (made++ == mostSpansARun)
            return;
        drop(database, "start < ? AND end > ?", missing.end, missing.start); // the hours of a day make place for it
        database.run(insertSpan, {missing.start, missing.end, finestRes(missing, now)});
        database.run(insertSums, {missing.start, missing.start, missing.end});
    }
}

} // namespace ostrivane::AppSums
