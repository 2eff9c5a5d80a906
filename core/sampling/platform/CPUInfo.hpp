#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

/// The text of /proc/cpuinfo, which each architecture writes in its own way.
namespace ostrivane::CPUInfo {

/// How much work each core does at most, by its index, on the kernel's scale of 0 to 1024.
using Capacities = std::map<std::int64_t, std::uint64_t>;

/// The processor's name: what x86, LoongArch, POWER and RISC-V print; on ARM, which prints numbers, the names of the
/// different cores, those of the highest capacity first: "Cortex-A76 + Cortex-A55". "CPU" when nothing is known.
std::string brand(std::string_view text, const Capacities& capacities);

} // namespace ostrivane::CPUInfo
