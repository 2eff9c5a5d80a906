#include "core/sampling/platform/KernelRecords.hpp"
#include "fuzz/Require.hpp"

#include <cstddef>
#include <cstdint>
#include <span>

using namespace ostrivane;

/// The macOS kernel's bytes: whatever they are, nothing is read beyond them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    for (const std::size_t cores : {std::size_t{1}, std::size_t{8}, size})
        if (const auto ticks = KernelRecords::cpuTicks(bytes, cores))
            require(ticks->perCore.size() == cores && ticks->perCore.size() * 16 <= size);
    KernelRecords::vmCounters(bytes);
    if (const auto swap = KernelRecords::swapUsage(bytes))
        require(size >= 32);
    KernelRecords::date(bytes);
    KernelRecords::integer(bytes);
    if (const auto text = KernelRecords::text(bytes))
        require(!text->empty());
    KernelRecords::coreIndex(bytes);
    KernelRecords::coreKind(bytes);
    return 0;
}
