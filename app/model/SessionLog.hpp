#pragma once

#include "core/model/Date.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace ostrivane {

class HistoryStore;

/// The rows of this program's sessions in the history. Belongs to the main thread.
class SessionLog {
public:
    /// @param onMainThread  as `AppParts::onMainThread`
    SessionLog(const std::shared_ptr<HistoryStore>& history, std::function<void(std::function<void()>)> onMainThread);

    /// Writes that a session has begun. `known` hears the id of its row, 0 where it could not be written; not after
    /// the session's end.
    void begin(std::string name, Date start, std::function<void(std::int64_t)> known);

    /// Writes the end of the one that was begun last; once more its beginning, where that could not be written.
    void end(Date date, std::string summaryJSON);

private:
    class Row;

    const std::weak_ptr<HistoryStore> history; ///< an answer that never comes must not keep it
    const std::function<void(std::function<void()>)> onMainThread;
    std::shared_ptr<Row> latest;
};

} // namespace ostrivane
