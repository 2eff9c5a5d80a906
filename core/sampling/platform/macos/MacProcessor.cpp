#include "core/sampling/platform/macos/MacProcessor.hpp"

#include "core/sampling/platform/KernelRecords.hpp"

#include <stdlib.h>

#include <span>

namespace ostrivane {

namespace {

/// The counters that `host_processor_info` put into our address space: ours to give back, their length in integers.
class CounterBuffer {
public:
    CounterBuffer(processor_info_array_t begin, mach_msg_type_number_t length) : first(begin), count(length) {}
    CounterBuffer(const CounterBuffer&) = delete;
    CounterBuffer& operator=(const CounterBuffer&) = delete;
    ~CounterBuffer() {
        vm_deallocate(mach_task_self(), reinterpret_cast<vm_address_t>(first), count * sizeof(integer_t));
    }

    std::span<const std::byte> bytes() const { return std::as_bytes(std::span(first, count)); }

private:
    processor_info_array_t first;
    mach_msg_type_number_t count;
};

} // namespace

std::optional<CPUTicks> MacProcessor::ticks() {
    natural_t cores = 0;
    processor_info_array_t counters = nullptr;
    mach_msg_type_number_t count = 0;
    if (host_processor_info(port.get(), PROCESSOR_CPU_LOAD_INFO, &cores, &counters, &count) != KERN_SUCCESS ||
        !counters)
        return std::nullopt;
    const CounterBuffer buffer(counters, count);
    return KernelRecords::cpuTicks(buffer.bytes(), cores);
}

std::optional<LoadAverage> MacProcessor::loadAverage() {
    LoadAverage averages{};
    if (getloadavg(averages.data(), static_cast<int>(averages.size())) != static_cast<int>(averages.size()))
        return std::nullopt;
    return averages;
}

} // namespace ostrivane
