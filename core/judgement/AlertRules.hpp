#pragma once

#include "core/judgement/AlertRun.hpp"

#include <string_view>

/// The rules themselves, one function a kind: each fires what its rule asks for on the run's snapshot.
namespace ostrivane::AlertRules {

/// The key of what belongs to no application. Most rules leave it alone: nobody could quit it.
inline constexpr std::string_view systemKey = "system";

/// Busy on average over the window.
void sustainedCPU(AlertRun& run);
/// Far busier than in the application's own past hour.
void unusualCPU(AlertRun& run);
void diskWrite(AlertRun& run);
void networkHeavy(AlertRun& run);

/// A share of the machine's memory, at this moment.
void excessiveMemory(AlertRun& run);
/// A steady leak, not a step.
void memoryGrowth(AlertRun& run);
void memoryPressure(AlertRun& run);
void swapGrowth(AlertRun& run);

void batteryDrain(AlertRun& run);
void highTemperature(AlertRun& run);
/// The whole window at the threshold's level or above.
void thermalPressure(AlertRun& run);
void lowStorage(AlertRun& run);

void idleServer(AlertRun& run);

} // namespace ostrivane::AlertRules
