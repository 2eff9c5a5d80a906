#pragma once

#include "core/judgement/Insight.hpp"
#include "core/judgement/InsightContext.hpp"

#include <vector>

namespace ostrivane {

struct PlatformWords;
struct SystemSnapshot;

/// What stands out in a snapshot. Nothing is remembered: a finding goes when its cause does.
namespace InsightEngine {

/// Warnings first, then notices; those of one level in the order in which they are looked for.
std::vector<Insight> insights(const SystemSnapshot& snapshot, const InsightContext& context,
                              const PlatformWords& words);

} // namespace InsightEngine
} // namespace ostrivane
