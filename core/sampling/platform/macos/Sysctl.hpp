#pragma once

#include "core/model/Date.hpp"
#include "core/sampling/platform/Memory.hpp"

#include <cstdint>
#include <optional>
#include <string>

/// The kernel's named values. Absent when the kernel does not know the name or holds something of another form.
namespace ostrivane::Sysctl {

/// Signed, of 4 or 8 bytes as the kernel has it.
std::optional<std::int64_t> integer(const char* name);

std::optional<std::string> string(const char* name);

/// "kern.boottime": by the wall clock, so it moves when the clock is set.
std::optional<Date> bootTime();

/// "vm.swapusage".
std::optional<SwapUsage> swapUsage();

} // namespace ostrivane::Sysctl
