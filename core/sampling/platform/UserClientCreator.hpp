#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ostrivane::UserClientCreator {

/// The process in a text such as "pid 812, Google Chrome He", by which the I/O registry says who opened a connection to
/// a driver. The name is cut and may hold anything. Absent for a text that names no process.
std::optional<std::int32_t> pid(std::string_view text);

} // namespace ostrivane::UserClientCreator
