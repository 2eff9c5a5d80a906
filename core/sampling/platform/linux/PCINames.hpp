#pragma once

#include "core/sampling/platform/linux/RootFolder.hpp"

#include <optional>
#include <string>

namespace ostrivane {

/// What chips on the PCI bus are called.
class PCINames {
public:
    /// `folder` must outlive it.
    explicit PCINames(const RootFolder& folder) : root(folder) {}

    /// The name of the device that lies in `folder` ("sys/class/drm/card0/device"): by the installed list, else after
    /// its maker. Absent for a device that is not on the bus, and for one of a maker unknown here. The list has 1 MB
    /// and is read anew for each question: ask once for a device.
    std::optional<std::string> name(const std::string& folder) const;

private:
    const RootFolder& root;
};

} // namespace ostrivane
