#pragma once

#include "core/sampling/platform/Clock.hpp"

#include <boost/asio/any_io_executor.hpp>

#include <memory>

namespace ostrivane {

/// Waits by a timer of the kernel's that goes on while the machine sleeps: a wait whose time came in sleep ends when
/// the machine wakes. Where there is no such timer, waits stand still in sleep.
class LinuxClock final : public Clock {
public:
    /// Waits end on `executor`, whose context must outlive the clock.
    explicit LinuxClock(const boost::asio::any_io_executor& executor);
    /// Cancels the wait under way.
    ~LinuxClock() override;

    Date now() override;
    bool wait(double seconds, std::function<void()> wake) override;
    void cancel() override;

private:
    class Timer;
    class BootTimer;
    class SteadyTimer;
    struct Turn;

    std::shared_ptr<Turn> turn;
    std::unique_ptr<Timer> timer;
};

} // namespace ostrivane
