#include "core/sampling/BackgroundTrim.hpp"

namespace ostrivane::BackgroundTrim {

namespace {
constexpr double busyCores = 0.001;
constexpr std::uint64_t largeBytes = 52'428'800; // 50 MiB
} // namespace

bool keeps(const ProcessSnapshot& process) {
    return process.cpu > busyCores || process.memory > largeBytes || process.isDevProcess ||
           (!process.isRestricted && process.diskWriteRate > 0);
}

std::vector<ProcessSnapshot> trimmed(std::vector<ProcessSnapshot> processes) {
    std::erase_if(processes, [](const ProcessSnapshot& process) { return !keeps(process); });
    return processes;
}

} // namespace ostrivane::BackgroundTrim
