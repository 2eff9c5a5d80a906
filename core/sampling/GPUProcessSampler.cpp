#include "core/sampling/GPUProcessSampler.hpp"

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double nanosPerSecond = 1e9;

} // namespace

const PidMap<double>& GPUProcessSampler::sample(double now) {
    loads = tracker.rates(source(), now);
    for (auto&& [pid, load] : loads)
        load = std::min(load / nanosPerSecond, 1.0); // several engines may work at once
    return loads;
}

} // namespace ostrivane
