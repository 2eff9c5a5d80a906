#pragma once

#include "core/model/SystemSnapshot.hpp"
#include "core/sampling/Collectors.hpp"
#include "core/sampling/SamplingDemand.hpp"
#include "core/sampling/SamplingSettings.hpp"
#include "core/sampling/platform/Clock.hpp"

#include <functional>
#include <memory>

namespace boost::asio {
class any_io_executor;
}

namespace ostrivane {

/// Reads the machine tick by tick and hands each snapshot to its consumers. A single-threaded owner: every call may
/// come from any thread, is queued on the engine's own strand and returns at once. Ticks never overlap.
class SamplingEngine {
public:
    /// Held by a consumer while it works on a snapshot: the next consumer, and the next tick, wait until it is let go
    /// of. A consumer that is done when it returns just drops it. May be let go of on any thread.
    using Turn = std::shared_ptr<void>;
    using Consumer = std::function<void(SharedSnapshot snapshot, Turn turn)>;

    /// `executor` must outlive the engine; what is still queued there when the engine goes does nothing. A consumer
    /// that is running on another thread by then runs to its end.
    SamplingEngine(const boost::asio::any_io_executor& executor, std::unique_ptr<Collectors> collectors,
                   std::unique_ptr<Clock> clock);
    ~SamplingEngine();
    SamplingEngine(const SamplingEngine&) = delete;
    SamplingEngine& operator=(const SamplingEngine&) = delete;

    /// Consumers are called in the order of registration and are never removed.
    void addConsumer(Consumer consumer);

    /// Wakes the sleeping loop when an interface appears or a page is added; closing something wakes nothing.
    void setDemand(SamplingDemand demand);

    /// Wakes nothing: a new interval counts from the next wait.
    void setSettings(SamplingSettings settings);

    void setRunningApps(RunningApps apps);

    /// Begins to tick, at once. Does nothing when it ticks already.
    void start();

    /// Ends the loop after the tick under way. Caches and counters are kept for a later `start`.
    void stop();

    /// Reads sockets and projects anew, and ticks at once.
    void refreshNow();

    /// The last snapshot; never null. Callable from any thread, without waiting for a tick.
    SharedSnapshot latest() const;

private:
    struct State;
    std::shared_ptr<State> state;
};

} // namespace ostrivane
