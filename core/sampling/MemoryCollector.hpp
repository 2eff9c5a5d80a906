#pragma once

#include "core/model/MemorySnapshot.hpp"
#include "core/sampling/platform/Memory.hpp"

#include <cstdint>
#include <optional>

namespace ostrivane::MemoryCollector {

/// Bytes from pages. Memory that may be dropped at once (purgeable) counts as cached, not as used. What the reading
/// lacks takes the mildest value: no swap, normal pressure, everything available.
/// @param previous   counters of the reading before, for the swap rates; without it they are 0
/// @param interval   seconds between the two; 0 or less gives rates of 0
/// @param pageSize   bytes
/// @param total      bytes of physical memory
MemorySnapshot compute(const MemoryReading& reading, const std::optional<VMCounters>& previous, double interval,
                       std::uint64_t pageSize, std::uint64_t total);

} // namespace ostrivane::MemoryCollector
