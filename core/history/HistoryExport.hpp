#pragma once

#include "core/history/SystemRow.hpp"

#include <string>
#include <string_view>
#include <vector>

/// The history of the machine as comma-separated values, for other programs.
namespace ostrivane::HistoryExport {

inline constexpr std::string_view columns =
    "time,cpu,mem_used_bytes,mem_pressure_pct,swap_bytes,gpu,disk_read_Bps,disk_write_Bps,net_in_Bps,net_out_Bps,"
    "battery_pct,power_w,cpu_temp_c,fan_rpm";

/// The columns' line and one line a row, in the order of `rows`. The time is the start of the bucket in UTC, loads are
/// fractions, traffic is bytes per second over the bucket; what is absent is an empty field. Numbers are the shortest
/// text that reads back, with a point in every locale.
std::string text(const std::vector<SystemRow>& rows);

} // namespace ostrivane::HistoryExport
