#pragma once

#include "app/model/Preferences.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The user's choices as a person and a program read them.
namespace ostrivane::cli {

struct SettingRow {
    std::string key;
    std::string value; ///< in words; safe to print
    std::string json;  ///< the whole value
    std::string defaultJSON;
    std::string offered; ///< what a person may choose
    std::string_view effect;

    bool isDefault() const { return json == defaultJSON; }
};

/// One for each of `Preferences`, in its order.
std::vector<SettingRow> settingRows(const Preferences& chosen);

/// A table, with a mark at what is not the default. Where `width` is too narrow its lines are cut off.
std::string settingsText(const std::vector<SettingRow>& rows, const std::string& place, std::optional<int> width);

/// An array of objects.
std::string settingsJSON(const std::vector<SettingRow>& rows);

} // namespace ostrivane::cli
