#include "core/sampling/platform/NativeMachine.hpp"

#include "core/sampling/platform/macos/MacClock.hpp"
#include "core/sampling/platform/macos/MacMachine.hpp"

namespace ostrivane {

Platform nativePlatform() {
    return Platform::macOS;
}

std::unique_ptr<Machine> nativeMachine() {
    return std::make_unique<MacMachine>();
}

std::unique_ptr<Clock> nativeClock(const boost::asio::any_io_executor& executor) {
    return std::make_unique<MacClock>(executor);
}

} // namespace ostrivane
