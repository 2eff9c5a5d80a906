#pragma once

#include "core/model/PidMap.hpp"

#include <concepts>
#include <utility>

namespace ostrivane {

/// Turns the growing counter of each process into a rate. One tracker for each kind of counter, used by one thread at a
/// time and always with the same clock.
template <std::unsigned_integral Counter>
class RateTracker {
public:
    /// Counter units per second since the call before, by process id; `now` is in seconds. A process has no entry when
    /// there is no data yet: it is new or was missing from the call before, its counter went backwards, or no time has
    /// passed. `current` is the base of the next call in every case.
    PidMap<double> rates(const PidMap<Counter>& current, double now) {
        PidMap<double> found;
        if (previousTime < now && !previous.empty()) {
            found.reserve(current.size());
            for (const auto& [pid, value] : current)
                if (const auto before = previous.find(pid); before != previous.end() && value >= before->second)
                    found.emplace(pid, static_cast<double>(value - before->second) / (now - previousTime));
        }
        rebase(current, now);
        return found;
    }

private:
    void rebase(const PidMap<Counter>& current, double now) {
        next.clear();
        if (current.size() > next.max_load()) // only to grow: asked for less, `reserve` gives room back
            next.reserve(current.size());
        next.insert(current.begin(), current.end());
        previous.swap(next);
        previousTime = now;
    }

    PidMap<Counter> previous;
    PidMap<Counter> next; ///< kept for its room
    double previousTime = 0;
};

} // namespace ostrivane
