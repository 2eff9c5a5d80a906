#include "core/sampling/platform/linux/LinuxClock.hpp"

#include "core/sampling/platform/linux/FileDescriptor.hpp"

#include <boost/asio/buffer.hpp>
#include <boost/asio/error.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <utility>

#include <sys/timerfd.h>

namespace ostrivane {

namespace {

namespace asio = boost::asio;

/// At least a nanosecond, for zero would switch the kernel's timer off.
std::chrono::nanoseconds duration(double seconds) {
    constexpr double longest = 1e9; // thirty years: what fits, and more than anybody waits
    const double kept = seconds > 0 ? std::min(seconds, longest) : 0;
    return std::max(std::chrono::nanoseconds(std::llround(kept * 1e9)), std::chrono::nanoseconds(1));
}

} // namespace

/// Which wait is the one under way. A handler that was queued before its wait was replaced finds another number here.
struct LinuxClock::Turn {
    std::atomic<std::uint64_t> number{0};
};

class LinuxClock::Timer {
public:
    using Handler = std::function<void(const boost::system::error_code&)>;

    virtual ~Timer() = default;
    /// Calls `handler` once, on the executor, when the time has passed or the wait was cancelled.
    virtual void start(std::chrono::nanoseconds duration, Handler handler) = 0;
    virtual void cancel() = 0;
};

class LinuxClock::BootTimer final : public Timer {
public:
    explicit BootTimer(asio::posix::stream_descriptor timer) : descriptor(std::move(timer)) {}

    void start(std::chrono::nanoseconds duration, Handler handler) override {
        cancel();
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
        itimerspec time{};
        time.it_value.tv_sec = static_cast<time_t>(seconds.count());
        time.it_value.tv_nsec = static_cast<long>((duration - seconds).count());
        ::timerfd_settime(descriptor.native_handle(), 0, &time, nullptr);
        // Read, not only waited for: the readiness of the wait before may be under way still, and ends no read.
        auto expirations = std::make_shared<std::uint64_t>(0);
        const asio::mutable_buffer buffer(expirations.get(), sizeof *expirations);
        descriptor.async_read_some(buffer,
                                   [expirations, handler = std::move(handler)](const boost::system::error_code& error,
                                                                               std::size_t) { handler(error); });
    }

    void cancel() override {
        boost::system::error_code ignored;
        descriptor.cancel(ignored);
    }

private:
    asio::posix::stream_descriptor descriptor;
};

class LinuxClock::SteadyTimer final : public Timer {
public:
    explicit SteadyTimer(const asio::any_io_executor& executor) : timer(executor) {}

    void start(std::chrono::nanoseconds duration, Handler handler) override {
        timer.expires_after(duration);
        timer.async_wait(std::move(handler));
    }

    void cancel() override { timer.cancel(); }

private:
    asio::steady_timer timer;
};

LinuxClock::LinuxClock(const asio::any_io_executor& executor) : turn(std::make_shared<Turn>()) {
    FileDescriptor file(::timerfd_create(CLOCK_BOOTTIME, TFD_NONBLOCK | TFD_CLOEXEC));
    asio::posix::stream_descriptor descriptor(executor);
    boost::system::error_code error = asio::error::bad_descriptor;
    if (file.isOpen())
        descriptor.assign(file.get(), error);
    if (error) {
        timer = std::make_unique<SteadyTimer>(executor);
        return;
    }
    file.release();
    timer = std::make_unique<BootTimer>(std::move(descriptor));
}

LinuxClock::~LinuxClock() {
    cancel();
}

Date LinuxClock::now() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return Date{std::chrono::duration<double>(sinceEpoch).count()};
}

bool LinuxClock::wait(double seconds, std::function<void()> wake) {
    const std::uint64_t mine = ++turn->number;
    timer->start(duration(seconds), [shared = turn, mine, wake = std::move(wake)](const auto& error) {
        if (error != asio::error::operation_aborted && shared->number == mine)
            wake();
    });
    return true;
}

void LinuxClock::cancel() {
    ++turn->number;
    timer->cancel();
}

} // namespace ostrivane
