#pragma once

#include <chrono>
#include <memory>

namespace boost::asio {
class any_io_executor;
}

namespace ostrivane {

/// How long the last tick is waited for; one takes some hundredths of a second.
inline constexpr std::chrono::milliseconds tickGrace{500};

/// A thread that may be left behind at the end, where a disk or the system holds it for ever.
class LeavableThread {
public:
    /// @param grace  how long its last work is waited for
    explicit LeavableThread(std::chrono::milliseconds grace = std::chrono::seconds(2));
    ~LeavableThread();
    LeavableThread(const LeavableThread&) = delete;
    LeavableThread& operator=(const LeavableThread&) = delete;

    /// Ends the thread's work as the destructor does. What is bound to the executor may be destroyed afterwards.
    void leave();

    boost::asio::any_io_executor executor();

private:
    struct Parts;
    std::unique_ptr<Parts> parts;
};

} // namespace ostrivane
