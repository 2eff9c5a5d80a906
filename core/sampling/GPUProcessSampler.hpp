#pragma once

#include "core/model/PidMap.hpp"
#include "core/model/RateTracker.hpp"

#include <cstdint>
#include <functional>
#include <utility>

namespace ostrivane {

/// The share of the graphics processor that each process takes, and the last result for ticks in between.
class GPUProcessSampler {
public:
    /// Nanoseconds of graphics time so far, by process.
    using Source = std::function<PidMap<std::uint64_t>()>;

    explicit GPUProcessSampler(Source asked) : source(std::move(asked)) {}

    /// Asks anew; `now` is in seconds. Fractions from 0 to 1; a process without an entry has none yet.
    const PidMap<double>& sample(double now);

    const PidMap<double>& last() const { return loads; }

private:
    Source source;
    RateTracker<std::uint64_t> tracker;
    PidMap<double> loads;
};

} // namespace ostrivane
