#pragma once

#include "core/history/HistoryStore.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace boost::asio {
class io_context;
}

namespace ostrivane::cli {

struct HistoryPlace;

/// A history file and a command's one thread, which waits for every answer.
class HistoryReader {
public:
    /// Without a file at `place` nothing is opened: every answer is empty then.
    HistoryReader(const HistoryPlace& place, HistoryAccess access);
    ~HistoryReader();
    HistoryReader(const HistoryReader&) = delete;
    HistoryReader& operator=(const HistoryReader&) = delete;

    template <class Result>
    Result ask(const std::function<void(HistoryStore&, HistoryStore::Answer<Result>)>& question) {
        Result answer{};
        if (store) {
            question(*store, [&answer](Result result) { answer = std::move(result); });
            work();
        }
        return answer;
    }

    void order(const std::function<void(HistoryStore&)>& deed);

    /// Absent without a file.
    std::optional<HistoryStatus> status();

    /// Why the last question could not be answered; absent when it was, and when there is no file yet.
    std::optional<std::string> problem();

    /// Why what was ordered may not be lasting; absent when it is, and when there is no file.
    std::optional<std::string> writeProblem();

private:
    void work();

    std::optional<std::string> placeProblem;
    std::unique_ptr<boost::asio::io_context> context;
    std::unique_ptr<HistoryStore> store;
};

} // namespace ostrivane::cli
