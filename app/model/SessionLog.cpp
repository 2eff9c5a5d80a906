#include "app/model/SessionLog.hpp"

#include "core/history/HistoryStore.hpp"

#include <mutex>
#include <optional>
#include <utility>

namespace ostrivane {

/// Its id comes some time after the beginning was ordered; the end may come before that, and waits for it. Whichever
/// thread learns of the second of the two writes the end: the main thread may be leaving by then.
class SessionLog::Row : public std::enable_shared_from_this<Row> {
public:
    Row(std::weak_ptr<HistoryStore> store, std::string called, Date from)
        : history(std::move(store)), name(std::move(called)), start(from) {}

    /// `known(id)` is called by the history.
    void begin(std::function<void(std::int64_t)> known) {
        if (const auto store = history.lock())
            store->startSession(name, start, std::move(known));
    }

    void setID(std::int64_t given) {
        const std::lock_guard lock(mutex);
        id = given;
        if (end)
            finish();
    }

    void setEnd(Date date, std::string summaryJSON) {
        const std::lock_guard lock(mutex);
        end = End{.date = date, .summaryJSON = std::move(summaryJSON)};
        if (id)
            finish();
    }

    bool hasEnded() const {
        const std::lock_guard lock(mutex);
        return end.has_value();
    }

private:
    struct End {
        Date date;
        std::string summaryJSON;
    };

    void finish() {
        if (*id != 0)
            return writeEnd(*id);
        begin([self = shared_from_this()](std::int64_t given) { // by now it may be possible
            if (given != 0)
                self->writeEnd(given);
        });
    }

    void writeEnd(std::int64_t known) const {
        if (const auto store = history.lock())
            store->finishSession(known, end->date, end->summaryJSON);
    }

    const std::weak_ptr<HistoryStore> history;
    const std::string name;
    const Date start;
    mutable std::mutex mutex;
    std::optional<std::int64_t> id; ///< set once, as is the end
    std::optional<End> end;
};

SessionLog::SessionLog(const std::shared_ptr<HistoryStore>& store, std::function<void(std::function<void()>)> post)
    : history(store), onMainThread(std::move(post)) {}

void SessionLog::begin(std::string name, Date start, std::function<void(std::int64_t)> known) {
    latest = std::make_shared<Row>(history, std::move(name), start);
    latest->begin([row = latest, post = onMainThread, known = std::move(known)](std::int64_t id) {
        row->setID(id);
        post([row, known, id] {
            if (!row->hasEnded())
                known(id);
        });
    });
}

void SessionLog::end(Date date, std::string summaryJSON) {
    latest->setEnd(date, std::move(summaryJSON));
}

} // namespace ostrivane
