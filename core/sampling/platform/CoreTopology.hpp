#pragma once

#include "core/sampling/HostInfo.hpp"
#include "core/sampling/platform/CPUInfo.hpp"

#include <cstdint>
#include <vector>

namespace ostrivane {

/// What Linux tells about the cores of a machine, by their index.
struct CoreTopology {
    std::vector<std::int64_t> possible; ///< cores that the machine can ever have
    std::vector<std::int64_t> online;
    std::vector<std::int64_t> fast;   ///< /sys/devices/cpu_core: only on hybrid machines of Intel
    std::vector<std::int64_t> frugal; ///< /sys/devices/cpu_atom, with cpu_lowpower where there is one
    CPUInfo::Capacities capacities;

    /// The kind of every core, `unknown` included: which index is which kind cannot be told from their numbers here.
    /// Cores are of different kinds where the machine lists them so, or where their capacities lie far apart.
    CoreKinds kinds() const;

    /// `logical` processors in all; those of each kind among the ones online. Without kinds all count as performance.
    CoreLayout layout(std::int64_t logical) const;
};

} // namespace ostrivane
