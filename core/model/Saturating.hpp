#pragma once

#include <cstdint>
#include <limits>

namespace ostrivane {

/// Sum and product that stop at the largest number instead of starting again at 0: a damaged counter must show as
/// absurd, not as small.
constexpr std::uint64_t saturatingSum(std::uint64_t a, std::uint64_t b) {
    std::uint64_t sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? std::numeric_limits<std::uint64_t>::max() : sum;
}

constexpr std::uint64_t saturatingProduct(std::uint64_t a, std::uint64_t b) {
    std::uint64_t product = 0;
    return __builtin_mul_overflow(a, b, &product) ? std::numeric_limits<std::uint64_t>::max() : product;
}

/// `a` less `b`; 0 when `b` is larger.
constexpr std::uint64_t flooredDifference(std::uint64_t a, std::uint64_t b) {
    return a > b ? a - b : 0;
}

} // namespace ostrivane
