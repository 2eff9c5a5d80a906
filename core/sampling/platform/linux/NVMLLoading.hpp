#pragma once

#include "core/sampling/platform/NVML.hpp"

#include <optional>

namespace ostrivane {

/// The library `file`, which stays loaded for the life of the program. Absent when it is not installed, and when
/// functions are missing in it.
std::optional<NVMLLibrary> loadNVML(const char* file = "libnvidia-ml.so.1");

} // namespace ostrivane
