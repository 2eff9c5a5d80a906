#pragma once

#include <cstdint>

/// Hardware ticks, in which some systems count the processor time of processes.
namespace ostrivane::MachTime {

/// Nanoseconds that a tick takes, from the fraction the system tells; 1 when its denominator is 0.
constexpr double nanosPerTick(std::uint32_t numer, std::uint32_t denom) {
    return denom == 0 ? 1.0 : static_cast<double>(numer) / static_cast<double>(denom);
}

/// `nanosPerTick` is the machine's own: `HostInfo::nanosPerTick`.
constexpr double seconds(std::uint64_t ticks, double nanosPerTick) {
    return nanosPerTick * static_cast<double>(ticks) / 1e9;
}

} // namespace ostrivane::MachTime
