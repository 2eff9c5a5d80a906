#pragma once

#include "core/sampling/Collectors.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// One of the running applications, as a desktop lists it.
struct ListedApplication {
    std::optional<std::string> bundlePath; ///< absent for a plain program
    long activationPolicy = 0;             ///< 0 regular, 1 accessory, 2 prohibited: never shows itself
    std::int32_t pid = 0;                  ///< -1 once it has ended
};

/// Those that a person recognises: of two with one bundle, the later in the list.
RunningApps recognisable(const std::vector<ListedApplication>& applications);

} // namespace ostrivane
