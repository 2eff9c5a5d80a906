#pragma once

#include "app/model/AppModel.hpp"
#include "core/sampling/MachineCollectors.hpp"
#include "core/sampling/platform/recorded/Playback.hpp"
#include "core/sampling/platform/recorded/RecordedMachine.hpp"
#include "tests/Fixtures.hpp"
#include "tests/app/model/ModelHarness.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>

#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane {

/// The collectors over a recorded machine, and what a machine is not asked through its questions yet: that stands in
/// the same recording.
class DayCollectors final : public MachineCollectors {
public:
    explicit DayCollectors(std::shared_ptr<Playback> asked)
        : MachineCollectors(recordedMachine(asked)), playback(std::move(asked)) {}

    std::optional<DiskCounters> diskCounters() override;
    std::optional<std::vector<VolumeInfo>> volumes() override;
    BatterySnapshot battery(const std::optional<BatteryHealth>& health) override;
    ThermalSnapshot thermal() override;
    std::vector<DevServer> devServers(const ProcessOutput& output, const std::vector<ListeningPort>& ports,
                                      double idleThreshold, double now) override;

private:
    std::shared_ptr<Playback> playback;
};

/// A clock that waits for nothing.
class HastyClock final : public Clock {
public:
    Date now() override { return {}; }
    bool wait(double /*seconds*/, std::function<void()> wake) override {
        wake();
        return true;
    }
    void cancel() override {}
};

/// Plays a recorded day through collectors, engine, store and model, all on the test's thread, where the time is that
/// of the recording.
class DayPlayer {
public:
    explicit DayPlayer(const std::string& recording) : playback(std::make_shared<Playback>(recording)) {
        AppParts parts;
        parts.settings = std::make_unique<AppSettings>(std::make_unique<MemoryKeyValueStore>());
        parts.engine = std::make_unique<SamplingEngine>(
            context.get_executor(), std::make_unique<DayCollectors>(playback),
            recordedClock(playback, std::make_unique<HastyClock>(), std::numeric_limits<double>::infinity(), [] {}));
        parts.engine->addConsumer([this](const SharedSnapshot& snapshot, const SamplingEngine::Turn&) {
            now = snapshot->timestamp;
            snapshots.push_back(now);
        });
        parts.history = std::make_unique<HistoryStore>(context.get_executor(), folder.file("history.sqlite"),
                                                       HistoryOptions{.now = [this] { return now; }});
        parts.notifier = std::make_unique<NotingNotifier>(notified);
        parts.onMainThread = [this](std::function<void()> work) { boost::asio::post(context, std::move(work)); };
        model.emplace(std::move(parts), AppModelOptions{.now = [this] { return now; }});
    }

    /// `look` is called after each snapshot that the model took in.
    void play(const std::function<void(AppModel&)>& look) {
        const Subscription subscription = model->observe([&](const ModelChanges& changes) {
            if (changes.snapshot)
                look(*model);
        });
        model->start();
        settle();
    }

    void settle() {
        context.restart();
        context.run();
    }

    /// What `ask(store, answer)` is answered.
    template <class Result, class Ask>
    Result answer(Ask ask) {
        std::optional<Result> given;
        ask(model->history(), HistoryStore::Answer<Result>([&](Result result) { given = std::move(result); }));
        settle();
        return std::move(*given);
    }

    std::vector<SystemRow> systemRows() {
        return answer<std::vector<SystemRow>>(
            [](HistoryStore& store, auto got) { store.systemRows({}, Date{1e11}, std::move(got)); });
    }

    const AppState& state() const { return model->state(); }

    std::shared_ptr<Playback> playback;
    TemporaryFolder folder;
    boost::asio::io_context context;
    Date now; ///< of the latest tick
    std::vector<Date> snapshots;
    std::vector<Alert> notified;
    std::optional<AppModel> model;
};

} // namespace ostrivane
