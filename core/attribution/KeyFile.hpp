#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Text of groups "[Name]" with lines "Key=Value" below: desktop entries, service files of the message bus, flatpak's
/// notes about a sandbox. Lines that are none of this are passed over.
namespace ostrivane::KeyFile {

/// Keys and values of one group as they are written. The views point into the text.
using Group = std::vector<std::pair<std::string_view, std::string_view>>;

/// The group `name`; absent when `text` has none, and for a text larger than any real file of the kind.
std::optional<Group> group(std::string_view text, std::string_view name);

/// The last value of `key`, as it is written; empty when the group has none.
std::string_view value(const Group& group, std::string_view key);

/// A value as text, valid UTF-8: "\s", "\n", "\t", "\r" and "\\" stand for what they name.
std::string text(std::string_view value);

/// A value as a list: its items end in ";", and "\;" is no end.
std::vector<std::string> list(std::string_view value);

bool isTrue(std::string_view value);

} // namespace ostrivane::KeyFile
