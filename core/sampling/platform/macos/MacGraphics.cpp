#include "core/sampling/platform/macos/MacGraphics.hpp"

#include "core/model/Saturating.hpp"
#include "core/sampling/platform/KernelRecords.hpp"
#include "core/sampling/platform/UserClientCreator.hpp"
#include "core/sampling/platform/macos/CFValue.hpp"
#include "core/sampling/platform/macos/IORegistry.hpp"

namespace ostrivane {

namespace {

constexpr const char* acceleratorClass = "IOAccelerator"; // each vendor's driver is a subclass

std::optional<double> percent(CFTypeRef statistics, std::string_view key) {
    const auto number = CFValue::integer(CFValue::member(statistics, key));
    return number ? std::optional(static_cast<double>(*number)) : std::nullopt;
}

std::optional<std::uint64_t> unsignedNumber(CFTypeRef dictionary, std::string_view key) {
    const auto number = CFValue::integer(CFValue::member(dictionary, key));
    return number && *number >= 0 ? std::optional(static_cast<std::uint64_t>(*number)) : std::nullopt;
}

std::optional<AcceleratorStatistics> statistics(const IOHandle& accelerator) {
    const auto property = IORegistry::property(accelerator, "PerformanceStatistics");
    const CFTypeRef known = property.get();
    if (!CFValue::isDictionary(known))
        return std::nullopt;
    const auto shared = unsignedNumber(known, "In use system memory");
    return AcceleratorStatistics{
        .devicePercent = percent(known, "Device Utilization %"),
        .rendererPercent = percent(known, "Renderer Utilization %"),
        .tilerPercent = percent(known, "Tiler Utilization %"),
        .memoryInUse = shared ? shared : unsignedNumber(known, "vramUsedBytes"), // a card with memory of its own
        .memoryAllocated = unsignedNumber(known, "Alloc system memory"),
    };
}

/// Text on Apple silicon, data that ends in a zero on older machines.
std::optional<std::string> model(const IOHandle& accelerator) {
    const auto property = IORegistry::property(accelerator, "model");
    if (const auto bytes = CFValue::data(property.get()))
        return KernelRecords::text(*bytes);
    const auto text = CFValue::string(property.get());
    return text && !text->empty() ? text : std::nullopt;
}

/// One client can draw through several interfaces, each with its own counter.
std::uint64_t accumulatedTime(const IOHandle& client) {
    const auto usage = IORegistry::property(client, "AppUsage");
    std::uint64_t nanos = 0;
    for (const CFTypeRef one : CFValue::elements(usage.get()))
        nanos = saturatingSum(nanos, unsignedNumber(one, "accumulatedGPUTime").value_or(0));
    return nanos;
}

} // namespace

std::vector<AcceleratorReading> MacGraphics::accelerators() {
    std::vector<AcceleratorReading> found;
    for (const IOHandle& accelerator : IORegistry::services(acceleratorClass))
        found.push_back({.name = model(accelerator), .statistics = statistics(accelerator)});
    return found;
}

PidMap<std::uint64_t> MacGraphics::processTimes() {
    PidMap<std::uint64_t> times;
    for (const IOHandle& accelerator : IORegistry::services(acceleratorClass))
        for (const IOHandle& client : IORegistry::children(accelerator)) {
            const auto creator = CFValue::string(IORegistry::property(client, "IOUserClientCreator").get());
            const auto pid = creator ? UserClientCreator::pid(*creator) : std::nullopt;
            if (!pid)
                continue;
            std::uint64_t& total = times[*pid];
            total = saturatingSum(total, accumulatedTime(client));
        }
    return times;
}

} // namespace ostrivane
