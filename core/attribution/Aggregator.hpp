#pragma once

#include "core/attribution/BundleInfoCache.hpp"
#include "core/model/ApplicationSnapshot.hpp"
#include "core/model/ProcessSnapshot.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// Sums of processes by what they belong to.
namespace ostrivane::Aggregator {

/// One record for each `appKey`, most memory first; of equal memory, the one whose process comes first. `runningApps`
/// are the applications that the desktop lists as running, with the pid it knows each by. Without per-process figures
/// of the network or the graphics processor those sums are absent.
std::vector<ApplicationSnapshot> applications(const std::vector<ProcessSnapshot>& processes, BundleInfoCache& bundles,
                                              const std::map<std::string, std::int32_t>& runningApps,
                                              bool networkAvailable, bool gpuAvailable);

} // namespace ostrivane::Aggregator
