#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// The text of /proc/spl/kstat/zfs/arcstats, about the file cache of ZFS, which the kernel does not count as one.
namespace ostrivane::ARCStats {

/// Bytes that the cache gives back when they are needed: what it holds above its lower limit.
std::optional<std::uint64_t> reclaimable(std::string_view text);

} // namespace ostrivane::ARCStats
