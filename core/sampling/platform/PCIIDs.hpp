#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The list of devices on the PCI bus that distributions install: usr/share/misc/pci.ids or usr/share/hwdata/pci.ids.
namespace ostrivane::PCIIDs {

/// The name a device is sold under, which stands in brackets behind the chip's: of "Navi 22 [Radeon RX 6700]" the part
/// within. Without brackets the whole name; absent for one that is not listed.
std::optional<std::string> deviceName(std::string_view list, std::uint16_t vendor, std::uint16_t device);

/// A number as sysfs writes it, "0x1002".
std::optional<std::uint16_t> id(std::string_view text);

} // namespace ostrivane::PCIIDs
