#pragma once

#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace ostrivane {

/// Graphics load now. Fractions are as the driver reports them, not clamped.
struct GPUSnapshot {
    std::string name = "GPU";
    std::optional<double> utilization;
    std::optional<double> rendererUtilization;
    std::optional<double> tilerUtilization;
    std::optional<std::uint64_t> memoryInUse;     ///< bytes
    std::optional<std::uint64_t> memoryAllocated; ///< bytes
    bool perAppAvailable = false;

    static const GPUSnapshot empty;
    friend bool operator==(const GPUSnapshot&, const GPUSnapshot&) = default;
};
BOOST_DESCRIBE_STRUCT(GPUSnapshot, (),
                      (name, utilization, rendererUtilization, tilerUtilization, memoryInUse, memoryAllocated,
                       perAppAvailable))
static_assert(describesEveryMember<GPUSnapshot>);
inline const GPUSnapshot GPUSnapshot::empty{};

} // namespace ostrivane
