#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>

namespace ostrivane {

/// How often the program has asked for memory so far, from any thread.
std::uint64_t allocationsSoFar();

/// Reports the allocations of one iteration as the counter "allocs"; `before` is the count right before the loop.
void reportAllocations(benchmark::State& state, std::uint64_t before);

} // namespace ostrivane
