#pragma once

#include "core/sampling/platform/macos/CFHandle.hpp"
#include "core/sampling/platform/macos/IOHandle.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The registry of devices and drivers. Every entry and value releases itself; what is refused is empty or absent.
namespace ostrivane::IORegistry {

/// The registered services of the class `className`, those of its subclasses included.
std::vector<IOHandle> services(const char* className);

/// The children of `entry` in the plane "IOService", user clients included.
std::vector<IOHandle> children(const IOHandle& entry);

std::optional<std::string> className(const IOHandle& entry);

/// A copy of all properties of `entry` (a dictionary), and of one.
CFHandle<CFTypeRef> properties(const IOHandle& entry);
CFHandle<CFTypeRef> property(const IOHandle& entry, std::string_view key);

/// The name the machine is sold under, "MacBook Pro (14-inch, 2023)"; Intel machines have none.
std::optional<std::string> productName();

} // namespace ostrivane::IORegistry
