#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ostrivane {

/// What /proc/meminfo tells, in bytes, as far as it is wanted. A line that is missing is absent: old kernels lack some,
/// and what containers put in its place may hold only a few.
struct Meminfo {
    std::optional<std::uint64_t> total;
    std::optional<std::uint64_t> free;
    std::optional<std::uint64_t> available; ///< the kernel's estimate, since 3.14
    std::optional<std::uint64_t> buffers;
    std::optional<std::uint64_t> cached; ///< `shared` included
    std::optional<std::uint64_t> active;
    std::optional<std::uint64_t> inactive;
    std::optional<std::uint64_t> anonymous;
    std::optional<std::uint64_t> shared;            ///< shared memory and tmpfs
    std::optional<std::uint64_t> kernelReclaimable; ///< since 4.20, `slabReclaimable` included
    std::optional<std::uint64_t> slabReclaimable;
    std::optional<std::uint64_t> zswap; ///< what compressed pages take, since 5.19
    std::optional<std::uint64_t> swapTotal;
    std::optional<std::uint64_t> swapFree;

    static Meminfo parse(std::string_view text);

    friend bool operator==(const Meminfo&, const Meminfo&) = default;
};

} // namespace ostrivane
