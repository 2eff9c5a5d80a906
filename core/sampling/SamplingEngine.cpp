#include "core/sampling/SamplingEngine.hpp"

#include "core/sampling/TickRunner.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/strand.hpp>

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cstdint>
#include <mutex>
#include <utility>
#include <vector>

namespace ostrivane {

namespace asio = boost::asio;

namespace {

constexpr double processorPageInterval = 1; // seconds; the page shows every core, whatever the settings say

double delay(const SamplingDemand& demand, const SamplingSettings& settings) {
    if (demand.windowVisible && demand.shows("cpu"))
        return processorPageInterval;
    return demand.anyUI() ? settings.foregroundInterval : settings.backgroundInterval;
}

bool asksForMore(const SamplingDemand& next, const SamplingDemand& before) {
    return (next.anyUI() && !before.anyUI()) || !std::ranges::includes(before.pages, next.pages);
}

} // namespace

/// Touched on `home` only, but for `latest` and `released`.
struct SamplingEngine::State : std::enable_shared_from_this<State> {
    State(const asio::any_io_executor& executor, std::unique_ptr<Collectors> asked, std::unique_ptr<Clock> time)
        : home(asio::make_strand(executor)), collectors(std::move(asked)), clock(std::move(time)), runner(*collectors),
          latest(std::make_shared<SystemSnapshot>(SystemSnapshot::empty(clock->now()))) {}

    /// Queues a call of `work(state)`. What arrives after the engine has gone is dropped.
    template <class Work>
    void post(Work work) {
        asio::post(home, [weak = weak_from_this(), work = std::move(work)]() mutable {
            if (const auto self = weak.lock(); self && !self->released)
                work(*self);
        });
    }

    void start() {
        if (looping)
            return;
        looping = true;
        if (ticking) // the tick of the loop before has yet to end: ticks never overlap
            tickAgain = true;
        else
            beginTick();
    }

    void stop() {
        looping = false;
        tickAgain = false;
        endWait();
    }

    /// Cuts the wait short. A wake during a tick, which then waits for models or consumers, is kept for its end.
    void wake() {
        if (ticking)
            tickAgain = looping;
        else if (waiting) {
            endWait();
            beginTick();
        }
    }

    void endWait() {
        clock->cancel();
        waiting = false;
        ++turn; // a wake that has begun to arrive is stale now
    }

    void beginTick() {
        assert(!ticking);
        ticking = true;
        tickAgain = false;
        if (!runner.begin({demand, settings, runningApps, *clock}))
            return finishTick(std::nullopt);
        collectors->aiModels(runner.listeningPorts(), [weak = weak_from_this()](AIModelsByPID models) {
            if (const auto self = weak.lock(); self && !self->released)
                self->post(
                    [models = std::move(models)](State& engine) mutable { engine.finishTick(std::move(models)); });
        });
    }

    void finishTick(std::optional<AIModelsByPID> models) {
        SharedSnapshot snapshot = runner.finish(std::move(models));
        {
            const std::scoped_lock lock(latestMutex);
            latest = snapshot;
        }
        handTo(0, std::move(snapshot));
    }

    void handTo(std::size_t index, SharedSnapshot snapshot) {
        if (released)
            return;
        if (index == consumers.size())
            return endTick();
        const Consumer consumer = consumers[index]; // a copy: the list may grow meanwhile
        Turn consumerTurn(nullptr, [weak = weak_from_this(), index, snapshot](void*) {
            if (const auto self = weak.lock(); self && !self->released)
                self->post([index, snapshot](State& engine) { engine.handTo(index + 1, snapshot); });
        });
        consumer(std::move(snapshot), std::move(consumerTurn));
    }

    void endTick() {
        ticking = false;
        if (!looping)
            return;
        if (tickAgain)
            return beginTick();
        waiting = clock->wait(delay(demand, settings), [weak = weak_from_this(), mine = ++turn] {
            if (const auto self = weak.lock(); self && !self->released)
                self->post([mine](State& engine) {
                    if (engine.waiting && mine == engine.turn) {
                        engine.waiting = false;
                        engine.beginTick();
                    }
                });
        });
        looping = waiting;
    }

    asio::strand<asio::any_io_executor> home;
    std::unique_ptr<Collectors> collectors;
    std::unique_ptr<Clock> clock;
    TickRunner runner;

    std::vector<Consumer> consumers;
    SamplingDemand demand;
    SamplingSettings settings;
    RunningApps runningApps;

    bool looping = false;   ///< between start and stop
    bool ticking = false;   ///< from the first reading to the last consumer
    bool waiting = false;   ///< between two ticks
    bool tickAgain = false; ///< the tick under way is followed by the next at once
    std::uint64_t turn = 0; ///< of the wait under way

    std::mutex latestMutex; ///< guards `latest`
    SharedSnapshot latest;
    std::atomic<bool> released = false;
};

SamplingEngine::SamplingEngine(const asio::any_io_executor& executor, std::unique_ptr<Collectors> collectors,
                               std::unique_ptr<Clock> clock)
    : state(std::make_shared<State>(executor, std::move(collectors), std::move(clock))) {}

SamplingEngine::~SamplingEngine() {
    state->released = true;
}

void SamplingEngine::addConsumer(Consumer consumer) {
    state->post([consumer = std::move(consumer)](State& engine) { engine.consumers.push_back(consumer); });
}

void SamplingEngine::setDemand(SamplingDemand demand) {
    state->post([demand = std::move(demand)](State& engine) {
        const bool more = asksForMore(demand, engine.demand);
        engine.demand = demand;
        if (more)
            engine.wake();
    });
}

void SamplingEngine::setSettings(SamplingSettings settings) {
    state->post([settings](State& engine) { engine.settings = settings; });
}

void SamplingEngine::setRunningApps(RunningApps apps) {
    state->post([apps = std::move(apps)](State& engine) { engine.runningApps = apps; });
}

void SamplingEngine::start() {
    state->post([](State& engine) { engine.start(); });
}

void SamplingEngine::stop() {
    state->post([](State& engine) { engine.stop(); });
}

void SamplingEngine::refreshNow() {
    state->post([](State& engine) {
        engine.runner.expirePorts();
        engine.wake();
    });
}

SharedSnapshot SamplingEngine::latest() const {
    const std::scoped_lock lock(state->latestMutex);
    return state->latest;
}

} // namespace ostrivane
