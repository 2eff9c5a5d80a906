#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// The text of /proc/vmstat.
namespace ostrivane::Vmstat {

/// Pages swapped since boot. Where all swap is compressed memory (zram, zswap) that means to and from there.
struct SwapTraffic {
    std::uint64_t in = 0;
    std::uint64_t out = 0;

    friend bool operator==(const SwapTraffic&, const SwapTraffic&) = default;
};

/// Absent unless both counters are there: kernels without swap have none.
std::optional<SwapTraffic> parse(std::string_view text);

} // namespace ostrivane::Vmstat
