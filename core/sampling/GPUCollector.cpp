#include "core/sampling/GPUCollector.hpp"

#include <algorithm>
#include <optional>

namespace ostrivane::GPUCollector {

namespace {

/// One that says nothing of how busy it is ranks below one that says 0.
const AcceleratorReading* busiest(const std::vector<AcceleratorReading>& accelerators) {
    const AcceleratorReading* chosen = nullptr;
    for (const AcceleratorReading& accelerator : accelerators) {
        if (!accelerator.statistics)
            continue;
        if (!chosen || accelerator.statistics->devicePercent > chosen->statistics->devicePercent)
            chosen = &accelerator;
    }
    return chosen;
}

/// A chip without a name is not called after the processor while another one beside it has a name of its own.
std::string nameOf(const AcceleratorReading* chosen, const std::vector<AcceleratorReading>& accelerators,
                   const std::string& cpuBrand) {
    if (chosen && chosen->name)
        return *chosen->name;
    const bool anyNamed = std::ranges::any_of(accelerators, [](const auto& each) { return each.name.has_value(); });
    return anyNamed ? GPUSnapshot::empty.name : cpuBrand;
}

std::optional<double> fraction(const std::optional<double>& percent) {
    return percent ? std::optional(*percent / 100) : std::nullopt;
}

} // namespace

GPUSnapshot read(const std::vector<AcceleratorReading>& accelerators, const std::string& cpuBrand) {
    const AcceleratorReading* chosen = busiest(accelerators);
    GPUSnapshot snapshot = GPUSnapshot::empty;
    snapshot.name = nameOf(chosen, accelerators, cpuBrand);
    if (!chosen)
        return snapshot;
    snapshot.utilization = fraction(chosen->statistics->devicePercent);
    snapshot.rendererUtilization = fraction(chosen->statistics->rendererPercent);
    snapshot.tilerUtilization = fraction(chosen->statistics->tilerPercent);
    snapshot.memoryInUse = chosen->statistics->memoryInUse;
    snapshot.memoryAllocated = chosen->statistics->memoryAllocated;
    return snapshot;
}

} // namespace ostrivane::GPUCollector
