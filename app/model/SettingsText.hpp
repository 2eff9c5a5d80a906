#pragma once

#include <map>
#include <string>
#include <string_view>

/// The text of a file of settings: lines "key=value" in the section "[General]", as other programs of a desktop keep
/// theirs. It may have been written by hand, or by anything: what is not understood is passed over, and stays as it is
/// when something else changes.
namespace ostrivane::SettingsText {

/// Bytes of the largest text that is taken for one of settings.
inline constexpr std::size_t largest = std::size_t(1) << 20;

/// What each key has, as it is written; of several the last counts. Lines ahead of the first section belong to
/// "[General]" too. The views point into `text`.
std::map<std::string_view, std::string_view> values(std::string_view text);

/// Whether a line can name `key` so that it is read back.
bool isKey(std::string_view key);

/// `text` with that value, in the place of the one that counts. A value is one line: control characters in it become
/// blanks, and it is read without those at its ends. The same text when `key` is none.
std::string replaced(std::string_view text, std::string_view key, std::string_view value);

/// `text` without any line that names `key`.
std::string removed(std::string_view text, std::string_view key);

} // namespace ostrivane::SettingsText
