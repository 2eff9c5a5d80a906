#include "core/sampling/platform/macos/MacClock.hpp"

#include "core/sampling/platform/macos/WallClock.hpp"

#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/steady_timer.hpp>

#include <sys/event.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <utility>

namespace ostrivane {

namespace asio = boost::asio;

namespace {

/// One at the least, and at the most some thirty years: what is no number, or past, is over at once.
std::chrono::nanoseconds nanosOf(double seconds) {
    constexpr double longest = 1e9;
    if (!(seconds > 0))
        return std::chrono::nanoseconds(1);
    return std::max(std::chrono::nanoseconds(1),
                    std::chrono::nanoseconds(static_cast<std::int64_t>(std::min(seconds, longest) * 1e9)));
}

/// A kernel queue, the caller's to close, that turns readable once the time is over; absent when there is none to have.
/// Asio's own timers stop while the machine sleeps here: the monotonic clock behind them does.
std::optional<int> queueReadableAfter(std::chrono::nanoseconds time) {
    const int queue = kqueue();
    if (queue < 0)
        return std::nullopt;
    struct kevent timer {};
    timer.ident = 1;
    timer.filter = EVFILT_TIMER;
    timer.flags = EV_ADD | EV_ONESHOT;
    timer.fflags = NOTE_NSECONDS | NOTE_MACH_CONTINUOUS_TIME | NOTE_CRITICAL;
    timer.data = static_cast<std::intptr_t>(time.count());
    if (kevent(queue, &timer, 1, nullptr, 0, nullptr) == 0)
        return queue;
    close(queue);
    return std::nullopt;
}

} // namespace

/// One wait with a queue of its own, so that nothing of an earlier one can wake it. Going out of scope ends it.
struct MacClock::Wait {
    explicit Wait(const asio::any_io_executor& executor) : queue(executor), timer(executor) {}
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;
    ~Wait() { *pending = false; }

    /// Whether the queue is watched now.
    bool watches(std::chrono::nanoseconds time) {
        const auto descriptor = queueReadableAfter(time);
        if (!descriptor)
            return false;
        boost::system::error_code refused;
        queue.assign(*descriptor, refused);
        if (refused)
            close(*descriptor);
        return !refused;
    }

    asio::posix::stream_descriptor queue;
    asio::steady_timer timer;
    /// Taken by whichever comes first, the wake or the end of this object: they may be on two threads.
    std::shared_ptr<std::atomic<bool>> pending = std::make_shared<std::atomic<bool>>(true);
};

MacClock::MacClock(asio::any_io_executor waitsOn) : executor(std::move(waitsOn)) {}

MacClock::~MacClock() = default;

Date MacClock::now() {
    return wallClock();
}

bool MacClock::wait(double seconds, std::function<void()> wake) {
    const auto time = nanosOf(seconds);
    current = std::make_unique<Wait>(executor);
    auto over = [pending = current->pending, wake = std::move(wake)](const boost::system::error_code& error) {
        if (!error && pending->exchange(false))
            wake();
    };
    if (current->watches(time)) {
        current->queue.async_wait(asio::posix::stream_descriptor::wait_read, std::move(over));
    } else { // out of descriptors: a wait that sleep prolongs is better than one without an end
        current->timer.expires_after(time);
        current->timer.async_wait(std::move(over));
    }
    return true;
}

void MacClock::cancel() {
    current.reset();
}

} // namespace ostrivane
