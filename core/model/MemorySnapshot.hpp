#pragma once

#include "core/model/Described.hpp"
#include "core/model/RawValue.hpp"

#include <cstdint>
#include <string_view>

namespace ostrivane {

/// How hard the system finds it to hand out memory. Ordered by gravity.
enum class MemoryPressure { normal = 0, warning = 1, critical = 2 };
constexpr MemoryPressure lastCase(EnumTag<MemoryPressure>) {
    return MemoryPressure::critical;
}

/// The word a person reads. The one for `warning` is "Elevated".
std::string_view label(MemoryPressure pressure);

/// Memory now, in bytes unless told otherwise.
struct MemorySnapshot {
    std::uint64_t total = 0;
    std::uint64_t app = 0;
    std::uint64_t wired = 0;
    std::uint64_t compressed = 0;
    std::uint64_t cached = 0;
    std::uint64_t free = 0;
    std::uint64_t used = 0;
    std::uint64_t swapTotal = 0;
    std::uint64_t swapUsed = 0;
    bool swapIsMemory = false;  ///< all swap is memory, compressed: nothing of it is written to a disk
    std::uint64_t swapIns = 0;  ///< pages since boot
    std::uint64_t swapOuts = 0; ///< pages since boot
    double swapInRate = 0;      ///< pages per second
    double swapOutRate = 0;     ///< pages per second
    MemoryPressure pressure = MemoryPressure::normal;
    std::int64_t availablePercent = 100; ///< 0 to 100, what the system calls available

    /// 100 less `availablePercent`, kept within 0 to 100.
    std::int64_t pressurePercent() const;
    /// `used` of `total`; 0 when `total` is 0.
    double usedFraction() const;

    static const MemorySnapshot empty;
    friend bool operator==(const MemorySnapshot&, const MemorySnapshot&) = default;
};
BOOST_DESCRIBE_STRUCT(MemorySnapshot, (),
                      (total, app, wired, compressed, cached, free, used, swapTotal, swapUsed, swapIsMemory, swapIns,
                       swapOuts, swapInRate, swapOutRate, pressure, availablePercent))
static_assert(describesEveryMember<MemorySnapshot>);
inline const MemorySnapshot MemorySnapshot::empty{};

} // namespace ostrivane
