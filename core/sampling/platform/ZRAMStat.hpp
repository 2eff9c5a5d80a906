#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// The text of /sys/block/zramN/mm_stat: orig_data_size compr_data_size mem_used_total and more, in bytes.
namespace ostrivane::ZRAMStat {

/// Bytes of memory that the device takes, with what its allocator wastes.
std::optional<std::uint64_t> memoryUsed(std::string_view text);

} // namespace ostrivane::ZRAMStat
