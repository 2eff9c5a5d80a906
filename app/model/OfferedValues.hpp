#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace ostrivane {

/// The numbers that a control offers, in steps of 1. A store may hold others: they are taken as they are.
struct OfferedRange {
    double least = 0;
    double most = 0;
    std::string_view unit;
};

/// Absent for what is no number.
constexpr std::optional<OfferedRange> offeredRange(std::string_view key) {
    if (key == "backgroundInterval")
        return OfferedRange{2, 30, "seconds"};
    if (key == "foregroundInterval")
        return OfferedRange{1, 10, "seconds"};
    if (key == "retentionDays")
        return OfferedRange{1, 90, "days"};
    if (key == "idleThresholdHours")
        return OfferedRange{1, 24, "hours"};
    return std::nullopt;
}

/// The tabs that `popoverTab` names.
inline constexpr std::array<std::string_view, 3> popoverTabs{"overview", "apps", "dev"};

} // namespace ostrivane
