// What the store costs beside the bare statements over the same rows, in files that lie beside each other. Each
// benchmark does one after the other, order alternating, and reports "timesBare".

#include "bench/BareHistory.hpp"
#include "core/history/AppSums.hpp"
#include "core/history/HistoryFile.hpp"
#include "core/history/HistoryStore.hpp"
#include "core/history/Retention.hpp"
#include "core/history/SampleTables.hpp"

#include <benchmark/benchmark.h>
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane {
namespace {

constexpr std::int64_t day = 86400;
constexpr std::int64_t begin = 1'700'006'400; // a midnight
constexpr std::int64_t monthEnd = begin + 30 * day;
constexpr std::size_t appsAMinute = 60;
constexpr std::size_t appsInAll = 110; // that come and go over the days
constexpr std::int64_t retention = 30; // days

/// Minutes with plausible figures, the same ones at each call.
class Minutes {
public:
    SystemRow system(std::int64_t bucket) {
        const double load = uniform(random);
        return {.bucket = bucket,
                .res = 60,
                .cpu = load / 2,
                .cpuMax = load,
                .cpuUser = load / 3,
                .cpuSystem = load / 6,
                .memUsed = 8e9 + load * 1e9,
                .memUsedMax = 9e9,
                .memApp = 5e9,
                .memWired = 1e9,
                .memCompressed = load * 1e8,
                .memCached = 3e9,
                .swapUsed = 0,
                .pressure = 40 + 10 * load,
                .pressureLevelMax = 1,
                .gpu = load / 4,
                .gpuMax = load / 2,
                .diskRead = load * 1e7,
                .diskWrite = load * 2e7,
                .netIn = load * 1e6,
                .netOut = load * 1e5,
                .batteryPct = 80,
                .powerW = 12 + load,
                .cpuTemp = 50 + load,
                .cpuTempMax = 60 + load,
                .gpuTemp = std::nullopt,
                .fanRPM = 1800,
                .samples = 30};
    }

    std::vector<AppRow> apps(std::int64_t bucket) {
        const auto first = static_cast<std::size_t>(bucket / (6 * 3600)) % appsInAll; // other ones every six hours
        std::vector<AppRow> rows;
        for (std::size_t i = 0; i < appsAMinute; ++i) {
            const double load = uniform(random);
            rows.push_back({.bucket = bucket,
                            .res = 60,
                            .appKey = key((first + i) % appsInAll),
                            .cpu = load / 8,
                            .cpuMax = load,
                            .mem = 2e8 * load,
                            .memMax = 3e8 * load,
                            .energyJ = load * 10,
                            .diskRead = load * 1e5,
                            .diskWrite = load * 2e5,
                            .netIn = load * 1e4,
                            .netOut = load * 1e3,
                            .gpu = 0,
                            .samples = 30});
        }
        return rows;
    }

    static std::string key(std::size_t index) {
        return fmt::format("/usr/share/applications/org.example.Application{:03}.desktop", index);
    }

private:
    std::mt19937_64 random{42};
    std::uniform_real_distribution<double> uniform{0, 1};
};

/// A folder for the files, where OSTRIVANE_BENCH_DIR says or among temporary files; removed in the end.
class Folder {
public:
    Folder() {
        const char* chosen = std::getenv("OSTRIVANE_BENCH_DIR");
        std::string name =
            ((chosen != nullptr ? std::filesystem::path(chosen) : std::filesystem::temp_directory_path()) /
             "ostrivane-bench-XXXXXX")
                .string();
        if (::mkdtemp(name.data()) == nullptr)
            std::abort();
        path = name;
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string file(const char* name) const { return path + "/" + name; }

private:
    std::string path;
};

/// Seconds that `work` takes.
template <class Work>
double timed(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Two ways of doing the same, by turns and in alternating order.
struct Duel {
    double ours = 0;
    double bare = 0;
    std::int64_t rounds = 0;

    template <class Ours, class Bare>
    void round(Ours doOurs, Bare doBare) {
        if (rounds % 2 == 0) {
            ours += timed(doOurs);
            bare += timed(doBare);
        } else {
            bare += timed(doBare);
            ours += timed(doOurs);
        }
        ++rounds;
    }

    void report(benchmark::State& state) const {
        const double each = 1e3 / static_cast<double>(std::max<std::int64_t>(rounds, 1));
        state.counters["ours_ms"] = ours * each;
        state.counters["bare_ms"] = bare * each;
        state.counters["timesBare"] = bare > 0 ? ours / bare : 0;
    }
};

/// A month of the program's life, minute by minute with maintenance every hour, in a file of the store's and in a bare
/// one.
class Month {
public:
    Month() {
        for (std::int64_t bucket = begin; bucket < monthEnd; bucket += 60) {
            minute(bucket);
            if ((bucket + 60 - begin) % 3600 == 0) {
                const bool isSteady = bucket > begin + 8 * day;
                const auto doOurs = [&] { Retention::maintain(*ours, bucket + 60, retention); };
                const auto doBare = [&] { bare.maintain(bucket + 60, retention); };
                if (isSteady) {
                    hourly.round(doOurs, doBare);
                } else {
                    doOurs();
                    doBare();
                }
            }
        }
    }

    void minute(std::int64_t bucket) {
        const SystemRow system = rows.system(bucket);
        const std::vector<AppRow> apps = rows.apps(bucket);
        const auto doOurs = [&] {
            ours->transaction([&] {
                SampleTables::insert(*ours, system);
                for (const AppRow& row : apps)
                    SampleTables::insert(*ours, row);
                AppSums::rowsCame(*ours, bucket, bucket);
            });
        };
        flush.round(doOurs, [&] { bare.write(system, apps); });
    }

    Folder folder;
    std::unique_ptr<SQLiteDatabase> ours = HistoryFile::open(folder.file("history.sqlite"));
    BareHistory bare{folder.file("bare.sqlite")};
    Minutes rows;
    Duel hourly;
    Duel flush;
};

Month& month() {
    static Month made;
    return made;
}

/// The transaction of a minute over the month, 60 applications. What the store does around it is `flushOfAMinute`.
void minuteTransaction(benchmark::State& state) {
    const Duel& flush = month().flush;
    for (auto _ : state)
        benchmark::DoNotOptimize(flush);
    flush.report(state);
}
BENCHMARK(minuteTransaction)->Iterations(1);

/// Maintenance once an hour, from the ninth day on.
void hourlyMaintenance(benchmark::State& state) {
    const Duel& hourly = month().hourly;
    for (auto _ : state)
        benchmark::DoNotOptimize(hourly);
    hourly.report(state);
}
BENCHMARK(hourlyMaintenance)->Iterations(1);

void fileOfAMonth(benchmark::State& state) {
    Month& life = month();
    for (auto _ : state)
        benchmark::DoNotOptimize(life);
    life.ours->execute("PRAGMA wal_checkpoint(TRUNCATE);");
    life.bare.execute("PRAGMA wal_checkpoint(TRUNCATE);");
    state.counters["ours_MiB"] = static_cast<double>(life.ours->fileSize()) / (1 << 20);
    state.counters["bare_MiB"] =
        static_cast<double>(std::filesystem::file_size(life.folder.file("bare.sqlite"))) / (1 << 20);
}
BENCHMARK(fileOfAMonth)->Iterations(1);

void chart(benchmark::State& state) {
    Month& life = month();
    const std::int64_t since = monthEnd - state.range(0) * day;
    Duel duel;
    for (auto _ : state)
        duel.round([&] { benchmark::DoNotOptimize(SampleTables::systemRows(*life.ours, since, monthEnd)); },
                   [&] { benchmark::DoNotOptimize(life.bare.systemRows(since, monthEnd)); });
    duel.report(state);
}
BENCHMARK(chart)->Arg(1)->Arg(7)->Arg(30)->ArgName("days")->Iterations(200);

void appChart(benchmark::State& state) {
    Month& life = month();
    const std::int64_t since = monthEnd - state.range(0) * day;
    const std::string key = life.rows.apps(monthEnd - 60).front().appKey;
    Duel duel;
    for (auto _ : state)
        duel.round([&] { benchmark::DoNotOptimize(SampleTables::appRows(*life.ours, key, since)); },
                   [&] { benchmark::DoNotOptimize(life.bare.appRows(key, since)); });
    duel.report(state);
}
BENCHMARK(appChart)->Arg(1)->Arg(30)->ArgName("days")->Iterations(200);

void topApps(benchmark::State& state) {
    Month& life = month();
    const std::int64_t since = monthEnd - state.range(0) * day;
    const auto window = static_cast<double>(monthEnd - since);
    Duel duel;
    for (auto _ : state)
        duel.round([&] { benchmark::DoNotOptimize(AppSums::top(*life.ours, since, window, 10)); },
                   [&] { benchmark::DoNotOptimize(life.bare.topApps(since, window, 10)); });
    duel.report(state);
}
BENCHMARK(topApps)->Arg(1)->Arg(7)->Arg(30)->ArgName("days")->Iterations(10);

/// The first maintenance of a file that holds 30 days of minutes.
void firstMaintenance(benchmark::State& state) {
    Folder folder;
    Duel duel;
    for (auto _ : state) {
        auto ours = HistoryFile::open(folder.file("history.sqlite"));
        BareHistory bare(folder.file("bare.sqlite"));
        Minutes rows;
        for (std::int64_t hour = begin; hour < monthEnd; hour += 3600) {
            bare.execute("BEGIN;");
            ours->transaction([&] {
                for (std::int64_t bucket = hour; bucket < hour + 3600; bucket += 60) {
                    const SystemRow system = rows.system(bucket);
                    const std::vector<AppRow> apps = rows.apps(bucket);
                    SampleTables::insert(*ours, system);
                    bare.insert(system);
                    for (const AppRow& row : apps) {
                        SampleTables::insert(*ours, row);
                        bare.insert(row);
                    }
                }
            });
            bare.execute("COMMIT;");
        }
        bare.execute("PRAGMA wal_checkpoint(TRUNCATE);");
        ours->execute("PRAGMA wal_checkpoint(TRUNCATE);");
        duel.round([&] { Retention::maintain(*ours, monthEnd, retention); },
                   [&] { bare.maintain(monthEnd, retention); });
    }
    duel.report(state);
}
BENCHMARK(firstMaintenance)->Iterations(1)->Unit(benchmark::kSecond);

} // namespace
} // namespace ostrivane
