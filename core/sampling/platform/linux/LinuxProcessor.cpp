#include "core/sampling/platform/linux/LinuxProcessor.hpp"

#include "core/sampling/platform/CPUList.hpp"
#include "core/sampling/platform/ProcLoadavg.hpp"
#include "core/sampling/platform/ProcStat.hpp"

namespace ostrivane {

namespace {

/// One above the highest core that can ever be there; it is settled when the system starts.
std::size_t coreLimitOf(const RootFolder& root) {
    const auto text = root.read("sys/devices/system/cpu/possible");
    const auto possible = text ? CPUList::parse(*text) : std::nullopt;
    return static_cast<std::size_t>(possible && !possible->empty() ? possible->back() + 1 : CPUList::limit);
}

} // namespace

LinuxProcessor::LinuxProcessor(const RootFolder& folder)
    : stat(folder, "proc/stat"), loadavg(folder, "proc/loadavg"), coreLimit(coreLimitOf(folder)) {}

std::optional<CPUTicks> LinuxProcessor::ticks() {
    const auto text = stat.read();
    auto ticks = text ? ProcStat::parse(*text, {.seen = coresSeen, .limit = coreLimit}) : std::nullopt;
    if (ticks)
        coresSeen = ticks->perCore.size();
    return ticks;
}

std::optional<LoadAverage> LinuxProcessor::loadAverage() {
    const auto text = loadavg.read();
    return text ? ProcLoadavg::parse(*text) : std::nullopt;
}

} // namespace ostrivane
