#include "core/sampling/platform/KernelRecords.hpp"

#include "core/model/Text.hpp"
#include "core/sampling/platform/Bytes.hpp"
#include "core/sampling/platform/KernelLayout.hpp"

#include <algorithm>
#include <string_view>

namespace ostrivane::KernelRecords {

namespace {

using Bytes::field;

constexpr std::size_t bytesPerCounter = 4;
constexpr std::size_t bytesPerCore = 4 * bytesPerCounter;
constexpr std::int64_t microsecondsPerSecond = 1'000'000;

} // namespace

std::optional<CPUTicks> cpuTicks(std::span<const std::byte> counters, std::size_t cores) {
    if (cores == 0 || cores > counters.size() / bytesPerCore)
        return std::nullopt;
    CPUTicks ticks{.perCore = std::vector<CPUTicks::Core>(cores), .wraps32 = true};
    // The kernel's order (user, system, idle, nice) is ours. Its type is signed, its counters are not: one that has
    // passed 2^31 would come out huge.
    for (std::size_t core = 0; core < cores; ++core)
        for (std::size_t i = 0; i < ticks.perCore[core].size(); ++i)
            ticks.perCore[core][i] = field<std::uint32_t>(counters, core * bytesPerCore + i * bytesPerCounter);
    return ticks;
}

std::optional<VMCounters> vmCounters(std::span<const std::byte> record) {
    using Layout = KernelLayout::VMStatistics64;
    if (record.size() < Layout::size)
        return std::nullopt;
    const auto pages = [record](std::size_t offset) { return field<std::uint32_t>(record, offset); };
    return VMCounters{.free = pages(Layout::freeCount),
                      .active = pages(Layout::activeCount),
                      .inactive = pages(Layout::inactiveCount),
                      .speculative = pages(Layout::speculativeCount),
                      .wired = pages(Layout::wireCount),
                      .purgeable = pages(Layout::purgeableCount),
                      .compressor = pages(Layout::compressorPageCount),
                      .internalPages = pages(Layout::internalPageCount),
                      .externalPages = pages(Layout::externalPageCount),
                      .swapins = field<std::uint64_t>(record, Layout::swapins),
                      .swapouts = field<std::uint64_t>(record, Layout::swapouts)};
}

std::optional<SwapUsage> swapUsage(std::span<const std::byte> record) {
    using Layout = KernelLayout::XswUsage;
    if (record.size() < Layout::size)
        return std::nullopt;
    return SwapUsage{.total = field<std::uint64_t>(record, Layout::total),
                     .used = field<std::uint64_t>(record, Layout::used)};
}

std::optional<Date> date(std::span<const std::byte> record) {
    using Layout = KernelLayout::Timeval;
    if (record.size() < Layout::size)
        return std::nullopt;
    const auto seconds = field<std::int64_t>(record, Layout::seconds);
    const auto microseconds = field<std::int32_t>(record, Layout::microseconds);
    if (seconds < 0 || microseconds < 0 || microseconds >= microsecondsPerSecond)
        return std::nullopt;
    return Date{static_cast<double>(seconds) + static_cast<double>(microseconds) / microsecondsPerSecond};
}

std::optional<std::int64_t> integer(std::span<const std::byte> value) {
    if (value.size() == sizeof(std::int32_t))
        return Bytes::littleEndian<std::int32_t>(value, 0);
    if (value.size() == sizeof(std::int64_t))
        return Bytes::littleEndian<std::int64_t>(value, 0);
    return std::nullopt;
}

std::optional<std::string> text(std::span<const std::byte> value) {
    const auto end = std::find(value.begin(), value.end(), std::byte{0});
    if (end == value.begin())
        return std::nullopt;
    const auto length = static_cast<std::size_t>(end - value.begin());
    return Text::repaired(std::string_view(reinterpret_cast<const char*>(value.data()), length));
}

std::optional<std::int64_t> coreIndex(std::span<const std::byte> value) {
    return Bytes::littleEndian<std::uint32_t>(value, 0);
}

std::optional<CoreLoad::Kind> coreKind(std::span<const std::byte> value) {
    if (value.empty())
        return std::nullopt;
    switch (std::to_integer<char>(value.front())) {
    case 'E':
        return CoreLoad::Kind::efficiency;
    case 'P':
        return CoreLoad::Kind::performance;
    default:
        return std::nullopt;
    }
}

} // namespace ostrivane::KernelRecords
