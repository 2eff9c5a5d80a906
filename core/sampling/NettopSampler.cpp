#include "core/sampling/NettopSampler.hpp"

#include <utility>

namespace ostrivane {

namespace {

PidMap<std::uint64_t> column(const PidMap<TrafficTotals>& totals, std::uint64_t TrafficTotals::*direction) {
    PidMap<std::uint64_t> bytes;
    bytes.reserve(totals.size());
    for (const auto& [pid, entry] : totals)
        bytes.emplace(pid, entry.*direction);
    return bytes;
}

} // namespace

const PidMap<TrafficRates>& NettopSampler::sample(double now) {
    auto current = sockets.traffic();
    available = current.has_value();
    if (!available)
        return rates;
    totals = std::move(*current);
    rates.clear();
    for (const auto& [pid, rate] : inTracker.rates(column(totals, &TrafficTotals::bytesIn), now))
        rates[pid].in = rate;
    for (const auto& [pid, rate] : outTracker.rates(column(totals, &TrafficTotals::bytesOut), now))
        rates[pid].out = rate;
    return rates;
}

} // namespace ostrivane
