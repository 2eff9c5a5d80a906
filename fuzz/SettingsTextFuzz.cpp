#include "app/model/SettingsText.hpp"
#include "fuzz/Require.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

using namespace ostrivane;

namespace {

/// A value in a file must read back, and leave every other value and all else in the file alone.
void change(std::string_view text, std::string_view key, std::string_view value) {
    const auto before = SettingsText::values(text);
    const std::string changed = SettingsText::replaced(text, key, value);
    auto after = SettingsText::values(changed);
    if (!SettingsText::isKey(key)) {
        require(changed == text);
        return;
    }
    require(after.contains(key) && SettingsText::replaced(changed, key, value) == changed);
    auto others = before;
    others.erase(key);
    after.erase(key);
    require(after == others);
    const std::string without = SettingsText::removed(changed, key);
    require(SettingsText::values(without) == others);
    // All that stood around the value still does.
    const std::size_t old = before.contains(key) ? before.at(key).size() : 0;
    const auto [first, ignored] = std::mismatch(text.begin(), text.end(), changed.begin(), changed.end());
    const auto [last, also] =
        std::mismatch(text.rbegin(), std::make_reverse_iterator(first), changed.rbegin(), changed.rend());
    require(last.base() - first <= static_cast<std::ptrdiff_t>(old));
}

} // namespace

/// The text may be anything, and so may be what stands for a key and a value in it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    change(text, "appearance", "\"dark\"");
    change(text, text.substr(0, text.find('\n')), text);
    change(text, text.substr(0, size / 4), text.substr(size / 2));
    for (const auto& [key, value] : SettingsText::values(text))
        change(text, key, "[1]");
    return 0;
}
