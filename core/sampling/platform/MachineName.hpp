#pragma once

#include <string>
#include <string_view>

namespace ostrivane {

/// What the firmware says about the machine it runs: the texts of /sys/class/dmi/id, and those of the device tree,
/// which are closed by a NUL. Empty where a file is missing.
struct MachineName {
    std::string sysVendor;
    std::string productName;
    std::string productVersion;
    std::string boardVendor;
    std::string boardName;
    std::string compatible; ///< device tree: a list, the most precise first
    std::string model;      ///< device tree

    /// The name of the product's type; "PC" when there is none.
    std::string modelIdentifier() const;

    /// The name a person knows the machine by; `modelIdentifier` when there is none. What makers write when they leave
    /// a field open ("To Be Filled By O.E.M.") is no name.
    std::string marketingName() const;
};

} // namespace ostrivane
