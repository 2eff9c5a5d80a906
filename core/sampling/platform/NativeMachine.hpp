#pragma once

#include "core/sampling/platform/Clock.hpp"
#include "core/sampling/platform/Machine.hpp"
#include "core/sampling/platform/Platform.hpp"

#include <boost/asio/any_io_executor.hpp>

#include <memory>

namespace ostrivane {

/// The system that the program runs on.
Platform nativePlatform();

/// The machine that the program runs on.
std::unique_ptr<Machine> nativeMachine();

/// Its clock. Waits end on `executor`.
std::unique_ptr<Clock> nativeClock(const boost::asio::any_io_executor& executor);

} // namespace ostrivane
