#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What is known beforehand about graphics on Linux.
namespace ostrivane::GraphicsDrivers {

/// The driver only shows a picture: that of a virtual machine, of a server's management chip, of the firmware. Its
/// "card" is no accelerator to report. True for no driver at all.
bool onlyDisplays(std::string_view driver);

/// A name by the maker's number on the PCI bus, for a chip that no list names.
std::optional<std::string> makersName(std::uint16_t vendor);

} // namespace ostrivane::GraphicsDrivers
