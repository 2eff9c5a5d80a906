#pragma once

#include "core/model/PidMap.hpp"
#include "core/model/RateTracker.hpp"
#include "core/sampling/platform/Sockets.hpp"

#include <cstdint>

namespace ostrivane {

/// Bytes per second over the network.
struct TrafficRates {
    double in = 0;
    double out = 0;

    friend bool operator==(const TrafficRates&, const TrafficRates&) = default;
};

/// The network traffic of each process, and the last result for ticks in between.
class NettopSampler {
public:
    /// `asked` outlives the sampler.
    explicit NettopSampler(Sockets& asked) : sockets(asked) {}

    /// Asks anew; `now` is in seconds. A process without an entry has no rate yet. The last rates stand when the source
    /// gives nothing.
    const PidMap<TrafficRates>& sample(double now);

    const PidMap<TrafficRates>& lastRates() const { return rates; }
    const PidMap<TrafficTotals>& lastTotals() const { return totals; }
    /// The source gave something the last time; true before the first.
    bool isAvailable() const { return available; }

private:
    Sockets& sockets;
    RateTracker<std::uint64_t> inTracker;
    RateTracker<std::uint64_t> outTracker;
    PidMap<TrafficRates> rates;
    PidMap<TrafficTotals> totals;
    bool available = true;
};

} // namespace ostrivane
