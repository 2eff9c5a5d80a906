#pragma once

#include "core/judgement/HealthCategory.hpp"

#include <optional>
#include <vector>

namespace ostrivane {

struct PlatformWords;
struct SystemSnapshot;

/// The machine's condition, side by side; no verdict over all of it.
namespace HealthEvaluator {

/// Processor, memory, storage, battery (of a machine that has one), heat, background activity, in this order.
/// @param cpuAverage5m         load of the whole machine over five minutes, a fraction
/// @param pressureElevatedFor  seconds since memory pressure left `normal`
std::vector<HealthCategory> evaluate(const SystemSnapshot& snapshot, std::optional<double> cpuAverage5m,
                                     std::optional<double> pressureElevatedFor, const PlatformWords& words);

} // namespace HealthEvaluator
} // namespace ostrivane
