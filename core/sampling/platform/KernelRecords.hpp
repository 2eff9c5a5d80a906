#pragma once

#include "core/model/CPUSnapshot.hpp"
#include "core/model/Date.hpp"
#include "core/sampling/platform/Memory.hpp"
#include "core/sampling/platform/Processor.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// Decoders of what the macOS kernel and its I/O registry hand out as bytes. Records may be longer than known today;
/// shorter ones and impossible values give nothing.
namespace ostrivane::KernelRecords {

/// The buffer of `host_processor_info`: four 32-bit counters a core. Absent without a core, and when fewer counters
/// came than `cores` need.
std::optional<CPUTicks> cpuTicks(std::span<const std::byte> counters, std::size_t cores);

/// `vm_statistics64`.
std::optional<VMCounters> vmCounters(std::span<const std::byte> record);

/// `xsw_usage`, the value of "vm.swapusage".
std::optional<SwapUsage> swapUsage(std::span<const std::byte> record);

/// `timeval`, the value of "kern.boottime".
std::optional<Date> date(std::span<const std::byte> record);

/// A number of sysctl: signed, of 4 or 8 bytes; other lengths hold no number.
std::optional<std::int64_t> integer(std::span<const std::byte> value);

/// A text of sysctl or of a registry property: what stands before the first zero byte, or all of it, as valid UTF-8.
/// Absent when that is nothing.
std::optional<std::string> text(std::span<const std::byte> value);

/// The registry's "logical-cpu-id" where it is data: an unsigned number in the first 4 bytes.
std::optional<std::int64_t> coreIndex(std::span<const std::byte> value);

/// The registry's "cluster-type", known by its first letter: "E" or "P".
std::optional<CoreLoad::Kind> coreKind(std::span<const std::byte> value);

} // namespace ostrivane::KernelRecords
