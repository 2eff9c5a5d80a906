#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <type_traits>

/// Fields of the records that kernels hand out, read byte by byte: no alignment, no struct of the system's needed.
namespace ostrivane::Bytes {

/// The integer at `offset`, lowest byte first; absent when it does not lie wholly in `record`.
template <std::integral Number>
constexpr std::optional<Number> littleEndian(std::span<const std::byte> record, std::size_t offset) {
    if (offset > record.size() || record.size() - offset < sizeof(Number))
        return std::nullopt;
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        value |= std::to_integer<std::uint64_t>(record[offset + i]) << (8 * i);
    return static_cast<Number>(static_cast<std::make_unsigned_t<Number>>(value));
}

/// The same in a record whose length has been checked.
template <std::integral Number>
constexpr Number field(std::span<const std::byte> record, std::size_t offset) {
    return littleEndian<Number>(record, offset).value();
}

} // namespace ostrivane::Bytes
