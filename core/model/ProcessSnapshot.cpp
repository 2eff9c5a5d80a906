#include "core/model/ProcessSnapshot.hpp"

namespace ostrivane {

namespace {

bool isHidden(const ProcessSnapshot& process) {
    return process.isRestricted && !process.memoryIsRSS;
}

} // namespace

std::optional<double> ProcessSnapshot::uptime(Date now) const {
    return startTime ? std::optional(now - *startTime) : std::nullopt;
}

std::optional<double> ProcessSnapshot::knownCPU() const {
    return isHidden(*this) ? std::nullopt : std::optional(cpu);
}

std::optional<std::uint64_t> ProcessSnapshot::knownMemory() const {
    return isHidden(*this) ? std::nullopt : std::optional(memory);
}

} // namespace ostrivane
