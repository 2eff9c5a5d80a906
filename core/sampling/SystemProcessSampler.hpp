#pragma once

#include "core/model/PidMap.hpp"
#include "core/model/RateTracker.hpp"
#include "core/sampling/platform/SystemProcesses.hpp"

#include <cstdint>

namespace ostrivane {

/// Load and memory of the processes that may not be read in detail, and the last result for ticks in between.
class SystemProcessSampler {
public:
    struct Entry {
        double cpu = 0;        ///< cores; 0 while there is no rate yet
        std::uint64_t rss = 0; ///< bytes

        friend bool operator==(const Entry&, const Entry&) = default;
    };

    /// `asked` outlives the sampler.
    explicit SystemProcessSampler(SystemProcesses& asked) : processes(asked) {}

    /// Asks anew; `now` is in seconds. The last entries stand when the source gives nothing.
    const PidMap<Entry>& sample(double now);

    const PidMap<Entry>& last() const { return entries; }

private:
    SystemProcesses& processes;
    RateTracker<std::uint64_t> cpuTracker;
    PidMap<std::uint64_t> starts; ///< of the processes in the call before
    PidMap<Entry> entries;
};

} // namespace ostrivane
