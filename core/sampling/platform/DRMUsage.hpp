#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

/// What the kernel keeps about one client of a graphics chip: whoever opened it once, however often the descriptor was
/// duplicated or passed on.
/// Source: the "drm-" lines of /proc/PID/fdinfo/FD. i915 and amdgpu write them since kernel 5.19, other drivers later,
/// some never.
struct DRMUsage {
    /// One part of the chip. Drivers count either nanoseconds or (xe) cycles, of which the share in `totalCycles`
    /// tells.
    struct Engine {
        std::string name;
        std::optional<std::uint64_t> busyNanos = std::nullopt;
        std::optional<std::uint64_t> cycles = std::nullopt;
        std::optional<std::uint64_t> totalCycles = std::nullopt;
        std::uint64_t capacity = 1; ///< how many equal ones work under this name and add up in its counter

        friend bool operator==(const Engine&, const Engine&) = default;
    };

    std::string driver;
    std::string address; ///< of the chip on the PCI bus; empty for one that is on none
    std::uint64_t client = 0;
    std::vector<Engine> engines;

    /// What tells one chip from another here.
    const std::string& device() const { return address.empty() ? driver : address; }

    /// Absent without a client's number, as for every other file and for drivers that write none of this.
    static std::optional<DRMUsage> parse(std::string_view text);

    friend bool operator==(const DRMUsage&, const DRMUsage&) = default;
};

} // namespace ostrivane
