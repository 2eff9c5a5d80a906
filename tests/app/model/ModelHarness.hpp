#pragma once

#include "app/model/AppModel.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/app/model/MemoryKeyValueStore.hpp"
#include "tests/sampling/EngineHarness.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane {

class NotingNotifier final : public Notifier {
public:
    explicit NotingNotifier(std::vector<Alert>& shown) : posted(shown) {}
    void post(const Alert& alert) override { posted.push_back(alert); }
    void requestAuthorization() override {}

private:
    std::vector<Alert>& posted;
};

/// A model over a real engine and a real store, all on the test's thread, with clocks that stand still.
class ModelHarness {
public:
    explicit ModelHarness(const AppModelOptions& chosen = {}) { open(chosen); }

    /// Ends the model, as the end of the program would, and begins another one over the same file and settings.
    void open(AppModelOptions options = {}) {
        auto engineClock = std::make_unique<ManualClock>();
        auto asked = std::make_unique<NotingCollectors>();
        clock = engineClock.get();
        collectors = asked.get();
        options.now = [this] { return now; };
        AppParts parts;
        parts.settings = std::make_unique<AppSettings>(std::make_unique<MemoryKeyValueStore>(stored));
        parts.engine =
            std::make_unique<SamplingEngine>(context.get_executor(), std::move(asked), std::move(engineClock));
        parts.history =
            std::make_unique<HistoryStore>(context.get_executor(), path, HistoryOptions{.now = [this] { return now; }});
        parts.notifier = std::make_unique<NotingNotifier>(notified);
        parts.onMainThread = [this](std::function<void()> work) { boost::asio::post(context, std::move(work)); };
        model.reset();
        model.emplace(std::move(parts), std::move(options));
        settle();
    }

    void settle() {
        context.restart();
        context.poll();
    }

    void apply(SystemSnapshot snapshot) {
        model->apply(std::make_shared<SystemSnapshot>(std::move(snapshot)));
        settle();
    }

    /// What `ask(store, answer)` is answered.
    template <class Result, class Ask>
    Result answer(Ask ask) {
        std::optional<Result> given;
        ask(model->history(), HistoryStore::Answer<Result>([&](Result result) { given = std::move(result); }));
        settle();
        return std::move(*given);
    }
    std::vector<StoredAlert> storedAlerts() {
        return answer<std::vector<StoredAlert>>(
            [](HistoryStore& store, auto got) { store.alerts(1000, std::move(got)); });
    }
    std::vector<StoredSession> storedSessions() {
        return answer<std::vector<StoredSession>>(
            [](HistoryStore& store, auto got) { store.sessions(std::move(got)); });
    }

    const AppState& state() const { return model->state(); }

    TemporaryFolder folder;
    std::string path = folder.file("history.sqlite");
    std::shared_ptr<MemoryKeyValueStore::Content> stored = std::make_shared<MemoryKeyValueStore::Content>();
    Date now{1'700'000'000};
    std::vector<Alert> notified;
    boost::asio::io_context context;
    ManualClock* clock = nullptr;
    NotingCollectors* collectors = nullptr;
    std::optional<AppModel> model;
};

} // namespace ostrivane
