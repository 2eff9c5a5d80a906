#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <ranges>

/// What rows of the history tell of traffic, of which they hold the bytes within their bucket.
namespace ostrivane {

/// Bytes per second over a bucket of `res` seconds. Lengths come from a file, which may be damaged: absent where the
/// length is none.
inline std::optional<double> perSecond(double bytes, std::int64_t res) {
    return res > 0 ? std::optional(bytes / static_cast<double>(res)) : std::nullopt;
}

/// Whether there was any. A row cannot tell no traffic from traffic that nobody measured: where there is none at all,
/// nothing should be claimed.
template <std::ranges::input_range Rows, class Row>
bool hasTraffic(const Rows& rows, double Row::*bytes) {
    return std::ranges::any_of(rows, [bytes](const Row& row) { return row.*bytes > 0; });
}

} // namespace ostrivane
