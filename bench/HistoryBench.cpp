// What the store costs beside the bare statements over the same rows, in files that lie beside each other. Each
// benchmark does one after the other, order alternating, and reports "timesBare".

#include "bench/BareHistory.hpp"
#include "core/history/HistoryFile.hpp"
#include "core/history/HistoryStore.hpp"
#include "core/history/MinuteAccumulator.hpp"
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

/// Minutes of a machine, one snapshot each, with plausible figures; the same ones at each call.
class Minutes {
public:
    SystemSnapshot next(std::int64_t bucket) {
        SystemSnapshot snapshot = SystemSnapshot::empty(Date{static_cast<double>(bucket)});
        const double load = uniform(random);
        snapshot.interval = 60;
        snapshot.cpu.usage = load;
        snapshot.cpu.user = load / 2;
        snapshot.cpu.system = load / 2;
        snapshot.memory.used = static_cast<std::uint64_t>(8e9 + load * 1e9);
        snapshot.memory.availablePercent = 60;
        snapshot.gpu.utilization = load / 4;
        snapshot.disk.readBytesPerSec = load * 1e6;
        snapshot.disk.writeBytesPerSec = load * 2e6;
        snapshot.network.inRate = load * 1e5;
        snapshot.network.outRate = load * 1e4;
        snapshot.battery.isPresent = true;
        snapshot.battery.percent = 80;
        snapshot.battery.systemPowerW = 12 + load;
        snapshot.thermal.cpuTemperature = 50 + load;
        snapshot.applications.resize(appsAMinute);
        const auto first = static_cast<std::size_t>(bucket / (6 * 3600)) % appsInAll; // other ones every six hours
        for (std::size_t index = 0; index < appsAMinute; ++index) {
            const double share = uniform(random);
            const std::size_t number = (first + index) % appsInAll;
            ApplicationSnapshot& app = snapshot.applications[index];
            app.key = fmt::format("/usr/share/applications/org.example.Application{:03}.desktop", number);
            app.name = fmt::format("Application {}", number);
            app.cpu = share / 8 + 0.01;
            app.memory = static_cast<std::uint64_t>(2e8 * share);
            app.powerW = share;
            app.diskReadRate = share * 1e4;
            app.diskWriteRate = share * 2e4;
            app.netInRate = share * 1e3;
            app.netOutRate = share * 1e2;
        }
        return snapshot;
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

/// Bytes that this process has handed to files so far.
double bytesWritten() {
    std::ifstream io("/proc/self/io");
    std::string label;
    for (double value = 0; io >> label >> value;)
        if (label == "wchar:")
            return value;
    return 0;
}

/// What some work has cost so far.
struct Cost {
    double seconds = 0;
    double written = 0; ///< bytes; 0 where the system does not count them

    template <class Work>
    void add(Work work) {
        const double before = bytesWritten();
        const auto start = std::chrono::steady_clock::now();
        work();
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        written += bytesWritten() - before;
    }
};

/// Two ways of doing the same, by turns and in alternating order.
struct Duel {
    Cost ours;
    Cost bare;
    std::int64_t rounds = 0;

    template <class Ours, class Bare>
    void round(Ours doOurs, Bare doBare) {
        if (rounds % 2 == 0)
            ours.add(doOurs);
        bare.add(doBare);
        if (rounds % 2 != 0)
            ours.add(doOurs);
        ++rounds;
    }

    void report(benchmark::State& state) const {
        const auto each = static_cast<double>(std::max<std::int64_t>(rounds, 1));
        state.counters["ours_ms"] = ours.seconds * 1e3 / each;
        state.counters["bare_ms"] = bare.seconds * 1e3 / each;
        state.counters["timesBare"] = ours.seconds / bare.seconds;
        if (bare.written > 0) {
            state.counters["ours_KiB"] = ours.written / 1024 / each;
            state.counters["bare_KiB"] = bare.written / 1024 / each;
        }
    }
};

/// A store that is asked and waited for.
class WaitedStore {
public:
    WaitedStore(const std::string& file, std::int64_t now)
        : store(context.get_executor(), file, {HistoryAccess::readWrite, [now] { return date(now); }}) {
        context.run();
    }

    static Date date(std::int64_t seconds) { return Date{static_cast<double>(seconds)}; }

    void run() {
        context.restart();
        context.run();
    }

    boost::asio::io_context context{1};
    HistoryStore store;
};

void insert(SQLiteDatabase& database, const FinishedBucket& minute) {
    SampleTables::insert(database, minute.system);
    for (const AppRow& row : minute.apps)
        SampleTables::insert(database, row);
}

/// A month of the program's life in the store's file and in a bare one: the days long past a day at a go, the last two
/// minute by minute, with maintenance every hour.
class Month {
public:
    Month() {
        makePast();
        store = std::make_unique<WaitedStore>(folder.file("history.sqlite"), closely);
        for (std::int64_t bucket = closely; bucket < monthEnd; bucket += 60) {
            const SharedSnapshot snapshot = std::make_shared<SystemSnapshot>(minutes.next(bucket));
            store->store.ingest(snapshot);
            store->run();
            if (const auto finished = accumulator.add(*snapshot))
                flush.round([&] { flushStore(); }, [&] { bare.write(*finished); });
            const std::int64_t end = bucket + 60;
            if (end % 3600 == 0)
                maintenance.round(
                    [&] {
                        store->store.maintain(WaitedStore::date(end));
                        store->run();
                    },
                    [&] { bare.maintain(end, retention); });
        }
    }

    Folder folder;
    BareHistory bare{folder.file("bare.sqlite")};
    std::unique_ptr<WaitedStore> store;
    Duel maintenance;
    Duel flush;

private:
    static constexpr std::int64_t closely = monthEnd - 2 * day;

    void makePast() {
        const auto ours = HistoryFile::open(folder.file("history.sqlite"));
        for (std::int64_t from = begin; from < closely; from += day) {
            bare.execute("BEGIN;");
            ours->transaction([&] {
                for (std::int64_t bucket = from; bucket < from + day; bucket += 60)
                    if (const auto finished = accumulator.add(minutes.next(bucket))) {
                        insert(*ours, *finished);
                        bare.insert(*finished);
                    }
            });
            bare.execute("COMMIT;");
            Retention::maintain(*ours, from + day, retention);
            bare.maintain(from + day, retention);
        }
    }

    void flushStore() {
        store->store.flush();
        store->run();
    }

    Minutes minutes;
    MinuteAccumulator accumulator{60};
};

Month& month() {
    static Month made;
    return made;
}

/// A finished minute on its way into the file, 60 applications.
void flushOfAMinute(benchmark::State& state) {
    const Duel& flush = month().flush;
    for (auto _ : state)
        benchmark::DoNotOptimize(flush);
    flush.report(state);
}
BENCHMARK(flushOfAMinute)->Iterations(1);

void hourlyMaintenance(benchmark::State& state) {
    const Duel& hourly = month().maintenance;
    for (auto _ : state)
        benchmark::DoNotOptimize(hourly);
    hourly.report(state);
}
BENCHMARK(hourlyMaintenance)->Iterations(1);

void fileOfAMonth(benchmark::State& state) {
    Month& life = month();
    for (auto _ : state)
        benchmark::DoNotOptimize(life);
    state.counters["ours_MiB"] =
        static_cast<double>(std::filesystem::file_size(life.folder.file("history.sqlite"))) / (1 << 20);
    state.counters["bare_MiB"] =
        static_cast<double>(std::filesystem::file_size(life.folder.file("bare.sqlite"))) / (1 << 20);
}
BENCHMARK(fileOfAMonth)->Iterations(1);

void chart(benchmark::State& state) {
    Month& life = month();
    const std::int64_t since = monthEnd - state.range(0) * day;
    Duel duel;
    for (auto _ : state)
        duel.round(
            [&] {
                life.store->store.systemRows(WaitedStore::date(since), WaitedStore::date(monthEnd),
                                             [](auto rows) { benchmark::DoNotOptimize(rows); });
                life.store->run();
            },
            [&] { benchmark::DoNotOptimize(life.bare.systemRows(since, monthEnd)); });
    duel.report(state);
}
BENCHMARK(chart)->Arg(1)->Arg(7)->Arg(30)->ArgName("days")->Iterations(200);

void appChart(benchmark::State& state) {
    Month& life = month();
    const std::int64_t since = monthEnd - state.range(0) * day;
    const std::string key = Minutes().next(monthEnd - 60).applications.front().key;
    Duel duel;
    for (auto _ : state)
        duel.round(
            [&] {
                life.store->store.appRows(key, WaitedStore::date(since),
                                          [](auto rows) { benchmark::DoNotOptimize(rows); });
                life.store->run();
            },
            [&] { benchmark::DoNotOptimize(life.bare.appRows(key, since)); });
    duel.report(state);
}
BENCHMARK(appChart)->Arg(1)->Arg(30)->ArgName("days")->Iterations(200);

void topApps(benchmark::State& state) {
    Month& life = month();
    const std::int64_t since = monthEnd - state.range(0) * day;
    Duel duel;
    for (auto _ : state)
        duel.round(
            [&] {
                life.store->store.topApps(WaitedStore::date(since), 10,
                                          [](auto list) { benchmark::DoNotOptimize(list); });
                life.store->run();
            },
            [&] { benchmark::DoNotOptimize(life.bare.topApps(since, static_cast<double>(monthEnd - since), 10)); });
    duel.report(state);
}
BENCHMARK(topApps)->Arg(1)->Arg(7)->Arg(30)->ArgName("days")->Iterations(10);

/// The first maintenance of a file that holds 30 days of minutes.
void firstMaintenance(benchmark::State& state) {
    const Folder folder;
    Duel duel;
    for (auto _ : state) {
        const auto ours = HistoryFile::open(folder.file("history.sqlite"));
        BareHistory bare(folder.file("bare.sqlite"));
        Minutes minutes;
        MinuteAccumulator accumulator(60);
        for (std::int64_t hour = begin; hour < monthEnd; hour += 3600) {
            bare.execute("BEGIN;");
            ours->transaction([&] {
                for (std::int64_t bucket = hour; bucket < hour + 3600; bucket += 60)
                    if (const auto finished = accumulator.add(minutes.next(bucket))) {
                        insert(*ours, *finished);
                        bare.insert(*finished);
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
BENCHMARK(firstMaintenance)->Iterations(1);

} // namespace
} // namespace ostrivane
