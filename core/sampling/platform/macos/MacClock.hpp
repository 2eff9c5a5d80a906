#pragma once

#include "core/sampling/platform/Clock.hpp"

#include <boost/asio/any_io_executor.hpp>

#include <memory>

namespace ostrivane {

/// Waits end on the executor.
class MacClock final : public Clock {
public:
    explicit MacClock(boost::asio::any_io_executor waitsOn);
    ~MacClock() override;

    Date now() override;
    bool wait(double seconds, std::function<void()> wake) override;
    void cancel() override;

private:
    struct Wait;

    boost::asio::any_io_executor executor;
    std::unique_ptr<Wait> current;
};

} // namespace ostrivane
