#pragma once

#include "core/sampling/platform/macos/CFHandle.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Core Foundation values in our own types. Each takes any value, none included, and is absent for one of another type.
namespace ostrivane::CFValue {

CFHandle<CFStringRef> newString(std::string_view utf8);

std::optional<std::string> string(CFTypeRef value);

std::optional<bool> boolean(CFTypeRef value);

/// A whole number that fits; a boolean is none.
std::optional<std::int64_t> integer(CFTypeRef value);

/// The same with a fraction, and finite.
std::optional<double> number(CFTypeRef value);

/// Binary data. The bytes are the value's own and live as long as it does.
std::optional<std::span<const std::byte>> data(CFTypeRef value);

/// What `dictionary` holds under `key`, borrowed from it; null when that is nothing.
CFTypeRef member(CFTypeRef dictionary, std::string_view key);

bool isDictionary(CFTypeRef value);

/// The elements of a list, borrowed from it; none for anything else.
std::vector<CFTypeRef> elements(CFTypeRef list);

} // namespace ostrivane::CFValue
