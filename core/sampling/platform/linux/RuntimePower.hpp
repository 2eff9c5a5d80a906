#pragma once

#include <string_view>

namespace ostrivane {

/// What a device's power/runtime_status says. Reading that file wakes nothing. A device that has none, and one that is
/// not managed ("unsupported"), is always awake.
inline bool sleeps(std::string_view runtimeStatus) {
    return runtimeStatus.starts_with("suspend"); // "suspended", "suspending"
}

} // namespace ostrivane
