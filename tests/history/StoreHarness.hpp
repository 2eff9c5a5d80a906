#pragma once

#include "core/history/HistoryStore.hpp"
#include "tests/TemporaryFolder.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace ostrivane {

/// A store over a file, a clock that stands still until a test moves it, and answers as plain values.
class StoreHarness {
public:
    explicit StoreHarness(std::string file, HistoryAccess access = HistoryAccess::readWrite) : path(std::move(file)) {
        open(access);
    }

    /// Ends the store, as the end of the program would, and begins another one on the same file.
    void open(HistoryAccess access = HistoryAccess::readWrite) {
        store.reset();
        run();
        store.emplace(context.get_executor(), path, HistoryOptions{access, [this] { return now; }});
        run();
    }

    void run() {
        context.restart();
        context.run();
    }

    /// What `ask(store, answer)` is answered.
    template <class Result, class Ask>
    Result answer(Ask ask) {
        std::optional<Result> given;
        ask(*store, HistoryStore::Answer<Result>([&](Result result) { given = std::move(result); }));
        run();
        return std::move(*given);
    }

    void ingest(SystemSnapshot snapshot) {
        store->ingest(std::make_shared<SystemSnapshot>(std::move(snapshot)));
        run();
    }

    void flush() {
        store->flush();
        run();
    }

    std::vector<SystemRow> systemRows(Date since = {}, Date until = Date{1e11}) {
        return answer<std::vector<SystemRow>>(
            [&](HistoryStore& asked, auto to) { asked.systemRows(since, until, std::move(to)); });
    }
    std::vector<AppRow> appRows(const std::string& key, Date since = {}) {
        return answer<std::vector<AppRow>>(
            [&](HistoryStore& asked, auto to) { asked.appRows(key, since, std::move(to)); });
    }
    std::vector<AppUsageSummary> topApps(Date since = {}, std::int64_t limit = -1) {
        return answer<std::vector<AppUsageSummary>>(
            [&](HistoryStore& asked, auto to) { asked.topApps(since, limit, std::move(to)); });
    }
    Totals totals(Date since = {}) {
        return answer<Totals>([&](HistoryStore& asked, auto to) { asked.totals(since, std::move(to)); });
    }
    HistoryStatus status() {
        return answer<HistoryStatus>([](HistoryStore& asked, auto to) { asked.status(std::move(to)); });
    }
    std::optional<std::string> problem() {
        return answer<std::optional<std::string>>([](HistoryStore& asked, auto to) { asked.problem(std::move(to)); });
    }
    std::optional<std::string> openError() {
        return answer<std::optional<std::string>>([](HistoryStore& asked, auto to) { asked.openError(std::move(to)); });
    }

    const std::string path;
    Date now{1'000'000'000};
    boost::asio::io_context context{1};
    std::optional<HistoryStore> store;
};

} // namespace ostrivane
