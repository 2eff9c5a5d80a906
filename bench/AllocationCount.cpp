#include "bench/AllocationCount.hpp"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::uint64_t> allocations = 0;

} // namespace

// The other forms of `new` come down to this one, except those for more than the usual alignment: they are not counted.
void* operator new(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace ostrivane {

std::uint64_t allocationsSoFar() {
    return allocations.load(std::memory_order_relaxed);
}

void reportAllocations(benchmark::State& state, std::uint64_t before) {
    const auto made = static_cast<double>(allocationsSoFar() - before); // first: the counter below allocates
    state.counters["allocs"] = benchmark::Counter(made, benchmark::Counter::kAvgIterations);
}

} // namespace ostrivane
