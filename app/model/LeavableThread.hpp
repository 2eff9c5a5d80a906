#pragma once

#include <memory>

namespace boost::asio {
class any_io_executor;
}

namespace ostrivane {

/// A thread that may be left behind at the end, where a disk holds it for ever: it is waited for two seconds.
class LeavableThread {
public:
    LeavableThread();
    ~LeavableThread();
    LeavableThread(const LeavableThread&) = delete;
    LeavableThread& operator=(const LeavableThread&) = delete;

    boost::asio::any_io_executor executor();

private:
    struct Parts;
    std::unique_ptr<Parts> parts;
};

} // namespace ostrivane
