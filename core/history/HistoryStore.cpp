#include "core/history/HistoryStore.hpp"

#include "core/history/AppSums.hpp"
#include "core/history/HistoryFile.hpp"
#include "core/history/MinuteAccumulator.hpp"
#include "core/history/RecordTables.hpp"
#include "core/history/Retention.hpp"
#include "core/history/SampleTables.hpp"
#include "core/history/WholeSeconds.hpp"
#include "core/model/Calendar.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/strand.hpp>
#include <boost/unordered/unordered_flat_set.hpp>

#include <algorithm>
#include <atomic>
#include <cassert>
#include <string_view>
#include <utility>

namespace ostrivane {

namespace asio = boost::asio;

namespace {

constexpr std::int64_t resolution = 60;         // seconds a row
constexpr double flushSeconds = 60;             // between two writes
constexpr double maintenanceSeconds = 3600;     // between two runs
constexpr std::size_t mostPendingApps = 20000;  // what waits while nothing can be written
constexpr std::size_t mostPendingSystem = 1500; // about a day of minutes
constexpr std::size_t mostPendingAlerts = 1000;
constexpr int mostWaiting = 128;                     // snapshots, while the store is busy or the disk stuck
constexpr Date distantPast{.seconds = -62135769600}; // the year 1

constexpr std::string_view upsertName =
    "INSERT INTO apps(app_key, name, bundle_id, last_seen) VALUES(?,?,?,?) ON CONFLICT(app_key) DO UPDATE SET "
    "name=excluded.name, last_seen=excluded.last_seen";

template <class Row>
void keepNewest(std::vector<Row>& rows, std::size_t most) {
    if (rows.size() > most)
        rows.erase(rows.begin(), rows.end() - static_cast<std::ptrdiff_t>(most));
}

template <class Result>
void tell(const HistoryStore::Answer<Result>& answer, Result result) {
    if (answer)
        answer(std::move(result));
}

void tell(const HistoryStore::Done& done) {
    if (done)
        done();
}

/// Has the database wait for a lock of others, for as long as the object lives.
class Patience {
public:
    explicit Patience(SQLiteDatabase& file) : database(file) { database.execute("PRAGMA busy_timeout=1000;"); }
    ~Patience() {
        try {
            database.execute("PRAGMA busy_timeout=0;");
        } catch (const SQLiteError&) { // then it goes on waiting, which does no harm
        }
    }
    Patience(const Patience&) = delete;
    Patience& operator=(const Patience&) = delete;

private:
    SQLiteDatabase& database;
};

} // namespace

/// Touched on `home` only, but for `path`, `waiting` and `released`.
struct HistoryStore::State : std::enable_shared_from_this<State> {
    State(const asio::any_io_executor& executor, std::string file, HistoryOptions chosen)
        : home(asio::make_strand(executor)), path(std::move(file)), access(chosen.access),
          now(chosen.now ? std::move(chosen.now) : Calendar::now), lastFlush(now()) {}

    /// Queues a call of `work(state)`. What arrives after the store has gone is dropped.
    template <class Work>
    void post(Work work) {
        asio::post(home, [self = shared_from_this(), work = std::move(work)]() mutable {
            if (!self->released)
                work(*self);
        });
    }

    void open() {
        try {
            db = access == HistoryAccess::readWrite ? HistoryFile::open(path) : HistoryFile::openToRead(path);
            opened = HistoryFile::identity(path);
        } catch (const SQLiteError& error) {
            openError = error.description;
        }
    }

    void reopen() {
        db.reset();
        opened.reset();
        openError.reset();
        writeError.reset();
        maintenanceError.reset();
        failedMaintenances = 0;
        access = HistoryAccess::readWrite;
        knownApps.clear(); // another file knows no names
        open();
    }

    /// What `work(database)` reads; `fallback` without a file, and when SQLite fails. The failure is kept for who asks
    /// until a read succeeds.
    template <class Result, class Work>
    Result read(Result fallback, Work work) {
        assert(home.running_in_this_thread());
        if (!db)
            return fallback;
        try {
            Result result = work(*db);
            readError.reset();
            return result;
        } catch (const SQLiteError& error) {
            readError = error.description;
            return fallback;
        }
    }

    /// Runs `work(database)`, which writes; false when it failed, or there is no file. The failure is kept in `error`
    /// for who asks, until such a write succeeds.
    template <class Work>
    bool write(std::optional<std::string>& error, Work work) {
        assert(home.running_in_this_thread());
        if (!db)
            return false;
        try {
            if (isLost()) // SQLite would go on writing to a file without a name
                throw SQLiteError(SQLiteError::Kind::step, "the file was removed or replaced while it was in use");
            work(*db);
            error.reset();
            return true;
        } catch (const SQLiteError& failure) {
            error = failure.description;
            return false;
        }
    }

    template <class Work>
    bool write(Work work) {
        return write(writeError, std::move(work));
    }

    /// Writes what a person is waiting for: whoever holds the file for a moment does not cost it.
    template <class Work>
    void writePatiently(Work work) {
        write([&](SQLiteDatabase& database) {
            const Patience patience(database);
            work(database);
        });
    }

    bool isLost() const { return !db || HistoryFile::identity(path) != opened; }

    void ingest(const SystemSnapshot& snapshot) {
        if (!db)
            return;
        if (auto finished = accumulator.add(snapshot)) {
            pendingSystem.push_back(finished->system);
            std::ranges::move(finished->apps, std::back_inserter(pendingApps));
        }
        const Date date = now();
        if (isDue(lastFlush, date, flushSeconds))
            flush();
        if (isDue(lastMaintenance, date, maintenanceSeconds))
            maintain(date);
    }

    /// A date ahead of the clock is due as well: the clock was set back, and may need long to come by again.
    static bool isDue(Date last, Date date, double seconds) { return date - last >= seconds || date < last; }

    void flush() {
        if (db && !(pendingSystem.empty() && pendingApps.empty() && pendingAlerts.empty())) {
            const bool wasHeldUp = writeError.has_value();
            const bool written =
                write([&](SQLiteDatabase& database) { database.transaction([&] { writePending(database); }); });
            if (written) {
                if (wasHeldUp) // and maintenance with it
                    failedMaintenances = 0;
                pendingSystem.clear();
                pendingApps.clear();
                pendingAlerts.clear();
            } else {
                keepNewest(pendingApps, mostPendingApps);
                keepNewest(pendingSystem, mostPendingSystem);
            }
        }
        lastFlush = now();
    }

    void writePending(SQLiteDatabase& database) {
        for (const StoredAlert& alert : pendingAlerts)
            RecordTables::insertAlert(database, alert);
        for (const SystemRow& row : pendingSystem)
            SampleTables::insert(database, row);
        if (pendingApps.empty())
            return;
        std::int64_t first = pendingApps.front().bucket;
        std::int64_t last = first;
        for (const AppRow& row : pendingApps) {
            SampleTables::insert(database, row);
            first = std::min(first, row.bucket);
            last = std::max(last, row.bucket);
            const MinuteAccumulator::AppName* name =
                knownApps.contains(row.appKey) ? nullptr : accumulator.appName(row.appKey);
            if (name != nullptr) {
                database.run(upsertName, {row.appKey, name->name, name->bundleID, row.bucket});
                knownApps.insert(row.appKey);
            }
        }
        AppSums::rowsCame(database, first, last);
    }

    void maintain(Date date) {
        if (!db)
            return;
        lastMaintenance = date; // first of all: a run that fails waits as long as a good one
        const bool isTidy = write(maintenanceError, [&](SQLiteDatabase& database) {
            Retention::maintain(database, wholeSeconds(date), retentionDays);
        });
        failedMaintenances = isTidy ? 0 : failedMaintenances + 1;
    }

    void clearAll() {
        if (!db)
            return;
        const bool isCleared = write(HistoryFile::clear);
        std::optional<std::string> compactError; // the file may still hold traces then
        write(compactError, HistoryFile::compact);
        if (isCleared)
            writeError = compactError;
        pendingSystem.clear();
        pendingApps.clear();
        pendingAlerts.clear();
        knownApps.clear();
        accumulator = MinuteAccumulator(resolution);
    }

    std::optional<std::string> problem() const {
        if (openError || writeError)
            return openError ? openError : writeError;
        if (failedMaintenances > 1) // one that met a lock is made good an hour later
            return "old rows are not tidied away: " + maintenanceError.value_or("");
        return std::nullopt;
    }

    HistoryStatus status() {
        HistoryStatus status;
        status.path = path;
        status.openError = openError;
        status.writeError = writeError;
        status.maintenanceError = maintenanceError;
        status.retentionDays = retentionDays;
        status.pendingSystem = static_cast<std::int64_t>(pendingSystem.size());
        status.pendingApps = static_cast<std::int64_t>(pendingApps.size());
        if (!db)
            return status;
        status.fileSize = db->fileSize();
        try {
            db->reading([&] { HistoryFile::count(*db, status); });
        } catch (const SQLiteError& error) {
            status.readError = error.description;
        }
        return status;
    }

    asio::strand<asio::any_io_executor> home;
    const std::string path;
    HistoryAccess access;
    const std::function<Date()> now;

    std::unique_ptr<SQLiteDatabase> db;          ///< null when it could not be opened
    std::optional<HistoryFile::Identity> opened; ///< the one that `db` has open
    std::optional<std::string> openError;
    std::optional<std::string> readError;
    std::optional<std::string> writeError;       ///< of the last write
    std::optional<std::string> maintenanceError; ///< of the last maintenance
    int failedMaintenances = 0;                  ///< one after the other

    MinuteAccumulator accumulator{resolution};
    std::vector<SystemRow> pendingSystem; ///< finished rows that are not written yet
    std::vector<AppRow> pendingApps;
    std::vector<StoredAlert> pendingAlerts; ///< that met a lock or a full disk
    Date lastFlush;
    Date lastMaintenance = distantPast;
    boost::unordered_flat_set<std::string> knownApps; ///< keys whose names this run has written
    std::int64_t retentionDays = defaultRetentionDays;

    std::atomic<int> waiting = 0; ///< snapshots handed over and not taken yet
    std::atomic<bool> released = false;
};

HistoryStore::HistoryStore(const asio::any_io_executor& executor, std::string path, HistoryOptions options)
    : state(std::make_shared<State>(executor, std::move(path), std::move(options))) {
    state->post([](State& store) { store.open(); });
}

HistoryStore::~HistoryStore() {
    state->released = true;
}

const std::string& HistoryStore::path() const {
    return state->path;
}

void HistoryStore::isAvailable(Answer<bool> answer) {
    state->post([answer = std::move(answer)](State& store) { tell(answer, store.db != nullptr); });
}

void HistoryStore::openError(Answer<std::optional<std::string>> answer) {
    state->post([answer = std::move(answer)](State& store) { tell(answer, store.openError); });
}

void HistoryStore::problem(Answer<std::optional<std::string>> answer) {
    state->post([answer = std::move(answer)](State& store) { tell(answer, store.problem()); });
}

void HistoryStore::isLost(Answer<bool> answer) {
    state->post([answer = std::move(answer)](State& store) { tell(answer, store.isLost()); });
}

void HistoryStore::reopen() {
    state->post([](State& store) { store.reopen(); });
}

void HistoryStore::close(Done done) {
    state->post([done = std::move(done)](State& store) {
        store.flush();
        store.db.reset();
        tell(done);
    });
}

void HistoryStore::readProblem(Answer<std::optional<std::string>> answer) {
    state->post([answer = std::move(answer)](State& store) {
        tell(answer, store.openError ? store.openError : store.readError);
    });
}

void HistoryStore::sizeOnDisk(Answer<std::uint64_t> answer) {
    state->post([answer = std::move(answer)](State& store) { tell(answer, store.db ? store.db->fileSize() : 0); });
}

void HistoryStore::status(Answer<HistoryStatus> answer) {
    state->post([answer = std::move(answer)](State& store) { tell(answer, store.status()); });
}

void HistoryStore::ingest(SharedSnapshot snapshot) {
    // Nobody waits for the store. When it is stuck for minutes, what comes then is lost, not the program's memory.
    if (state->waiting.fetch_add(1) >= mostWaiting) {
        --state->waiting;
        return;
    }
    state->post([snapshot = std::move(snapshot)](State& store) {
        --store.waiting;
        store.ingest(*snapshot);
    });
}

void HistoryStore::flush(Done done) {
    state->post([done = std::move(done)](State& store) {
        store.flush();
        tell(done);
    });
}

void HistoryStore::maintain(Date now, Done done) {
    state->post([now, done = std::move(done)](State& store) {
        store.maintain(now);
        tell(done);
    });
}

void HistoryStore::setRetention(std::int64_t days) {
    state->post([days](State& store) { store.retentionDays = std::max<std::int64_t>(days, 1); });
}

void HistoryStore::systemRows(Date since, Date until, Answer<std::vector<SystemRow>> answer) {
    state->post([since, until, answer = std::move(answer)](State& store) {
        auto rows = store.read(std::vector<SystemRow>(), [&](SQLiteDatabase& database) {
            return SampleTables::systemRows(database, wholeSeconds(since), wholeSeconds(until));
        });
        std::ranges::copy_if(store.pendingSystem, std::back_inserter(rows),
                             [&](const SystemRow& row) { return row.date() >= since && row.date() <= until; });
        tell(answer, std::move(rows));
    });
}

void HistoryStore::appRows(std::string key, Date since, Answer<std::vector<AppRow>> answer) {
    state->post([key = std::move(key), since, answer = std::move(answer)](State& store) {
        auto rows = store.read(std::vector<AppRow>(), [&](SQLiteDatabase& database) {
            return SampleTables::appRows(database, key, wholeSeconds(since));
        });
        std::ranges::copy_if(store.pendingApps, std::back_inserter(rows),
                             [&](const AppRow& row) { return row.appKey == key && row.date() >= since; });
        tell(answer, std::move(rows));
    });
}

void HistoryStore::topApps(Date since, std::int64_t limit, Answer<std::vector<AppUsageSummary>> answer) {
    state->post([since, limit, answer = std::move(answer)](State& store) {
        store.flush(); // so that the ranking sees everything
        const double window = std::max(store.now() - since, 60.0);
        tell(answer, store.read(std::vector<AppUsageSummary>(), [&](SQLiteDatabase& database) {
            return AppSums::top(database, wholeSeconds(since), window, limit);
        }));
    });
}

void HistoryStore::appsAt(Date date, std::int64_t limit, Answer<std::vector<AppMoment>> answer) {
    state->post([date, limit, answer = std::move(answer)](State& store) {
        store.flush(); // so that the latest minutes are among them
        tell(answer, store.read(std::vector<AppMoment>(), [&](SQLiteDatabase& database) {
            return SampleTables::appsAt(database, wholeSeconds(date), limit);
        }));
    });
}

void HistoryStore::totals(Date since, Answer<Totals> answer) {
    state->post([since, answer = std::move(answer)](State& store) {
        Totals totals = store.read(
            Totals(), [&](SQLiteDatabase& database) { return SampleTables::totals(database, wholeSeconds(since)); });
        for (const SystemRow& row : store.pendingSystem) {
            if (row.date() < since)
                continue;
            totals.diskRead += row.diskRead;
            totals.diskWrite += row.diskWrite;
            totals.netIn += row.netIn;
            totals.netOut += row.netOut;
            totals.energyWh += row.powerW.value_or(0) * static_cast<double>(row.res) / 3600;
        }
        tell(answer, totals);
    });
}

void HistoryStore::earliestSample(Answer<std::optional<Date>> answer) {
    state->post([answer = std::move(answer)](State& store) {
        std::optional<Date> earliest;
        if (const auto bucket = store.read(std::optional<std::int64_t>(), SampleTables::earliestBucket))
            earliest = Date{static_cast<double>(*bucket)};
        if (!store.pendingSystem.empty())
            earliest =
                std::min(earliest.value_or(store.pendingSystem.front().date()), store.pendingSystem.front().date());
        tell(answer, earliest);
    });
}

void HistoryStore::appName(std::string key, Answer<std::optional<std::string>> answer) {
    state->post([key = std::move(key), answer = std::move(answer)](State& store) {
        tell(answer, store.read(std::optional<std::string>(), [&](SQLiteDatabase& database) {
            std::optional<std::string> name;
            database.each("SELECT name FROM apps WHERE app_key = ?", {key},
                          [&](const SQLiteDatabase::Row& row) { name = row.text(0); });
            return name;
        }));
    });
}

void HistoryStore::recordAlert(Date date, std::string rule, std::string severity, std::string title, std::string body,
                               std::optional<std::string> subject, Answer<std::int64_t> answer) {
    StoredAlert alert{.id = 0,
                      .date = date,
                      .rule = std::move(rule),
                      .severity = std::move(severity),
                      .title = std::move(title),
                      .body = std::move(body),
                      .subject = std::move(subject)};
    state->post([alert = std::move(alert), answer = std::move(answer)](State& store) {
        std::int64_t id = 0;
        const bool isWritten =
            store.write([&](SQLiteDatabase& database) { id = RecordTables::insertAlert(database, alert); });
        if (!isWritten && store.db && store.pendingAlerts.size() < mostPendingAlerts)
            store.pendingAlerts.push_back(alert);
        tell(answer, id);
    });
}

void HistoryStore::alerts(std::int64_t limit, Answer<std::vector<StoredAlert>> answer) {
    state->post([limit, answer = std::move(answer)](State& store) {
        tell(answer, store.read(std::vector<StoredAlert>(),
                                [&](SQLiteDatabase& database) { return RecordTables::alerts(database, limit); }));
    });
}

void HistoryStore::clearAlerts(Done done) {
    state->post([done = std::move(done)](State& store) {
        store.pendingAlerts.clear();
        store.write(RecordTables::deleteAlerts);
        tell(done);
    });
}

void HistoryStore::startSession(std::string name, Date start, Answer<std::int64_t> answer) {
    state->post([name = std::move(name), start, answer = std::move(answer)](State& store) {
        std::int64_t id = 0;
        store.writePatiently(
            [&](SQLiteDatabase& database) { id = RecordTables::insertSession(database, name, wholeSeconds(start)); });
        tell(answer, id);
    });
}

void HistoryStore::finishSession(std::int64_t id, Date end, std::string summaryJSON, Done done) {
    state->post([id, end, summaryJSON = std::move(summaryJSON), done = std::move(done)](State& store) {
        store.writePatiently([&](SQLiteDatabase& database) {
            RecordTables::finishSession(database, id, wholeSeconds(end), summaryJSON);
        });
        tell(done);
    });
}

void HistoryStore::sessions(Answer<std::vector<StoredSession>> answer) {
    state->post([answer = std::move(answer)](State& store) {
        tell(answer, store.read(std::vector<StoredSession>(), RecordTables::sessions));
    });
}

void HistoryStore::deleteSession(std::int64_t id, Done done) {
    state->post([id, done = std::move(done)](State& store) {
        store.writePatiently([&](SQLiteDatabase& database) { RecordTables::deleteSession(database, id); });
        tell(done);
    });
}

void HistoryStore::recordStorage(std::string path, std::uint64_t bytes, Date date, Done done) {
    state->post([path = std::move(path), bytes, date, done = std::move(done)](State& store) {
        store.write(
            [&](SQLiteDatabase& database) { RecordTables::insertStorage(database, path, wholeSeconds(date), bytes); });
        tell(done);
    });
}

void HistoryStore::storageBaseline(std::string path, Date since, Answer<std::optional<StorageSize>> answer) {
    state->post([path = std::move(path), since, answer = std::move(answer)](State& store) {
        const auto found = store.read(std::vector<StorageSize>(), [&](SQLiteDatabase& database) {
            return RecordTables::storageBaseline(database, path, wholeSeconds(since));
        });
        tell(answer, found.empty() ? std::nullopt : std::optional(found.front()));
    });
}

void HistoryStore::storageSeries(std::string path, Date since, Answer<std::vector<StorageSize>> answer) {
    state->post([path = std::move(path), since, answer = std::move(answer)](State& store) {
        tell(answer, store.read(std::vector<StorageSize>(), [&](SQLiteDatabase& database) {
            return RecordTables::storageSeries(database, path, wholeSeconds(since));
        }));
    });
}

void HistoryStore::clearAll(Done done) {
    state->post([done = std::move(done)](State& store) {
        store.clearAll();
        tell(done);
    });
}

} // namespace ostrivane
