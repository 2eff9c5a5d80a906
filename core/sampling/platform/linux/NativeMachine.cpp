#include "core/sampling/platform/NativeMachine.hpp"

#include "core/sampling/platform/DescriptorLimit.hpp"
#include "core/sampling/platform/linux/LinuxClock.hpp"
#include "core/sampling/platform/linux/LinuxMachine.hpp"

namespace ostrivane {

Platform nativePlatform() {
    return Platform::Linux;
}

std::unique_ptr<Machine> nativeMachine() {
    DescriptorLimit::raise(); // ahead of the readers: it decides how much they keep open
    return std::make_unique<LinuxMachine>("/", DescriptorLimit::budget());
}

std::unique_ptr<Clock> nativeClock(const boost::asio::any_io_executor& executor) {
    return std::make_unique<LinuxClock>(executor);
}

} // namespace ostrivane
