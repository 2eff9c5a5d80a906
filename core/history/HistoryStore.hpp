#pragma once

#include "core/history/AppMoment.hpp"
#include "core/history/AppRow.hpp"
#include "core/history/AppUsageSummary.hpp"
#include "core/history/HistoryStatus.hpp"
#include "core/history/StorageSize.hpp"
#include "core/history/StoredAlert.hpp"
#include "core/history/StoredSession.hpp"
#include "core/history/SystemRow.hpp"
#include "core/history/Totals.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace boost::asio {
class any_io_executor;
}

namespace ostrivane {

enum class HistoryAccess {
    readWrite, ///< makes the file and its tables where they are missing
    readOnly   ///< beside a writer in another process; changes no row, and writes fail
};

struct HistoryOptions {
    HistoryAccess access = HistoryAccess::readWrite;
    std::function<Date()> now; ///< the wall clock when empty
};

/// The program's one lasting record of what happened, in one SQLite file. A single-threaded owner: every call may come
/// from any thread, is queued on the store's own strand, and returns at once; operations run one at a time in the order
/// in which they arrive. Answers are called on that strand: who needs them elsewhere posts them there. Nothing throws.
///
/// Without a file (`openError`) every operation is harmless: lists are empty, sums and ids 0, optionals absent.
class HistoryStore {
public:
    template <class Result>
    using Answer = std::function<void(Result)>;
    using Done = std::function<void()>;

    static constexpr std::int64_t defaultRetentionDays = 30;

    /// Opens the file as the first of its operations. The folder of `path` must exist.
    /// `executor` must outlive the store; what is still queued there when the store goes is dropped, answers too: who
    /// needs it done waits for a `flush`.
    HistoryStore(const boost::asio::any_io_executor& executor, std::string path, HistoryOptions options = {});
    ~HistoryStore();
    HistoryStore(const HistoryStore&) = delete;
    HistoryStore& operator=(const HistoryStore&) = delete;

    const std::string& path() const;

    void isAvailable(Answer<bool> answer);

    /// SQLite's words about the failed open.
    void openError(Answer<std::optional<std::string>> answer);

    /// Why the history is not being kept as it should now: the failed open, the last write if it failed, or maintenance
    /// that fails again and again. Costs nothing to ask.
    void problem(Answer<std::optional<std::string>> answer);

    /// Whether nothing can be kept as it stands: the file could not be opened, or was removed or replaced. `reopen` may
    /// do better.
    void isLost(Answer<bool> answer);

    /// Opens the file once more, to write, or makes another one. The minutes that wait in memory go there.
    void reopen();

    /// Lets go of the file, after a last flush. Further calls are harmless, as without a file.
    void close(Done done = {});

    /// Why the last question has an empty answer though the file may hold one: the failed open, or the read if it
    /// failed.
    void readProblem(Answer<std::optional<std::string>> answer);

    /// Bytes of the file and its write-ahead log.
    void sizeOnDisk(Answer<std::uint64_t> answer);

    /// Reads all tables once: for a person who asks, not for every tick.
    void status(Answer<HistoryStatus> answer);

    /// Adds a snapshot to the minute under way; writes and tidies when it is time.
    void ingest(SharedSnapshot snapshot);

    /// Writes the minutes that are finished. `done` is called whether it could or not.
    void flush(Done done = {});

    /// Coarsens and deletes old rows.
    void maintain(Date now, Done done = {});

    /// How many days are kept; at least 1.
    void setRetention(std::int64_t days);

    /// Rows of every resolution within both dates, in the order of their buckets, those not yet written last.
    void systemRows(Date since, Date until, Answer<std::vector<SystemRow>> answer);
    void appRows(std::string key, Date since, Answer<std::vector<AppRow>> answer);

    /// The applications that used most processor time since then, the first first. A negative limit is none.
    void topApps(Date since, std::int64_t limit, Answer<std::vector<AppUsageSummary>> answer);
    /// Those in the bucket that holds `date`, the one with most processor time first; none where nothing was recorded.
    /// A negative limit is none.
    void appsAt(Date date, std::int64_t limit, Answer<std::vector<AppMoment>> answer);
    void totals(Date since, Answer<Totals> answer);
    void earliestSample(Answer<std::optional<Date>> answer);
    void appName(std::string key, Answer<std::optional<std::string>> answer);

    /// Answers the id of the row, 0 when it could not be written.
    void recordAlert(Date date, std::string rule, std::string severity, std::string title, std::string body,
                     std::optional<std::string> subject, Answer<std::int64_t> answer = {});
    /// The newest first.
    void alerts(std::int64_t limit, Answer<std::vector<StoredAlert>> answer);
    void clearAlerts(Done done = {});

    void startSession(std::string name, Date start, Answer<std::int64_t> answer);
    void finishSession(std::int64_t id, Date end, std::string summaryJSON, Done done = {});
    /// The newest first.
    void sessions(Answer<std::vector<StoredSession>> answer);
    void deleteSession(std::int64_t id, Done done = {});

    void recordStorage(std::string path, std::uint64_t bytes, Date date, Done done = {});
    /// The oldest size of `path` since then.
    void storageBaseline(std::string path, Date since, Answer<std::optional<StorageSize>> answer);
    /// In the order of time.
    void storageSeries(std::string path, Date since, Answer<std::vector<StorageSize>> answer);

    /// Deletes everything, what waits in memory too.
    void clearAll(Done done = {});

private:
    struct State;
    std::shared_ptr<State> state;
};

} // namespace ostrivane
