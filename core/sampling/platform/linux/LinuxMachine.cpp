#include "core/sampling/platform/linux/LinuxMachine.hpp"

#include <algorithm>

#include <time.h>
#include <unistd.h>

namespace ostrivane {

namespace {

std::uint64_t systemValue(int name) {
    return static_cast<std::uint64_t>(std::max(::sysconf(name), 1L));
}

double secondsOf(clockid_t clock) {
    timespec now{};
    ::clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

/// The instant of boot stays what it was when first asked, whatever becomes of the wall clock.
LinuxProcesses::Units processUnits() {
    return {.bootTime = Date{secondsOf(CLOCK_REALTIME) - secondsOf(CLOCK_BOOTTIME)},
            .ticksPerSecond = systemValue(_SC_CLK_TCK),
            .pageSize = systemValue(_SC_PAGESIZE),
            .userID = ::getuid()};
}

} // namespace

LinuxMachine::LinuxMachine(const std::filesystem::path& path, std::size_t keptDescriptors)
    : root(path), hostAnswers(root), processorAnswers(root), memoryAnswers(root, systemValue(_SC_PAGESIZE)),
      graphicsAnswers(root), processAnswers(root, processUnits(), keptDescriptors), socketAnswers(root, ::getuid()),
      fileAnswers(root) {}

} // namespace ostrivane
