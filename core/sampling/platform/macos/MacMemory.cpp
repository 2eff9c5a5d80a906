#include "core/sampling/platform/macos/MacMemory.hpp"

#include "core/sampling/platform/KernelRecords.hpp"
#include "core/sampling/platform/macos/Sysctl.hpp"

#include <algorithm>
#include <array>
#include <span>

namespace ostrivane {

namespace {

std::optional<VMCounters> counters(host_t host) {
    std::array<integer_t, HOST_VM_INFO64_COUNT> record{};
    mach_msg_type_number_t count = HOST_VM_INFO64_COUNT; // in integers; comes back as what an older kernel filled
    if (host_statistics64(host, HOST_VM_INFO64, record.data(), &count) != KERN_SUCCESS)
        return std::nullopt;
    const auto filled = std::min<std::size_t>(count, record.size());
    return KernelRecords::vmCounters(std::as_bytes(std::span(record).first(filled)));
}

} // namespace

std::optional<MemoryReading> MacMemory::reading() {
    const auto pages = counters(port.get());
    if (!pages)
        return std::nullopt;
    return MemoryReading{.counters = *pages,
                         .swap = Sysctl::swapUsage(),
                         .pressureLevel = Sysctl::integer("kern.memorystatus_vm_pressure_level"),
                         .availablePercent = Sysctl::integer("kern.memorystatus_level")};
}

} // namespace ostrivane
