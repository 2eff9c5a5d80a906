#pragma once

#include "core/model/CPUSnapshot.hpp"
#include "core/sampling/HostInfo.hpp"
#include "core/sampling/platform/Processor.hpp"

#include <optional>

namespace ostrivane::CPUCollector {

/// Loads between two readings of the ticks. Without a previous reading they are averages since boot. The core counts
/// come from `layout`; load averages, uptime and brand are the caller's to add.
CPUSnapshot compute(const std::optional<CPUTicks>& previous, const CPUTicks& current, const CoreLayout& layout,
                    const CoreKinds& kinds);

} // namespace ostrivane::CPUCollector
