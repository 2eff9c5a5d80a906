#pragma once

#include "core/model/GPUSnapshot.hpp"
#include "core/sampling/platform/Graphics.hpp"

#include <string>
#include <vector>

namespace ostrivane::GPUCollector {

/// The busiest chip of a machine, the first of several that are equally busy: with a frugal and a fast one, the one
/// that works. Without any, the name is the processor's, of which the graphics are then taken to be a part.
/// `perAppAvailable` is the engine's to set.
GPUSnapshot read(const std::vector<AcceleratorReading>& accelerators, const std::string& cpuBrand);

} // namespace ostrivane::GPUCollector
