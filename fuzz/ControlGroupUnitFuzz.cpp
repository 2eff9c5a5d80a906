#include "core/attribution/ControlGroupUnit.hpp"
#include "core/model/Text.hpp"
#include "fuzz/Require.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

using namespace ostrivane;

/// Users name control groups. What is taken from the names becomes part of a key: valid UTF-8 without control
/// characters that the name itself did not hold, and a group that is in the text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto unit = ControlGroupUnit::parse(text);
    const bool isPlain = std::none_of(text.begin(), text.end(), [](char c) { return c >= 0 && c < ' ' && c != '\n'; });
    for (const auto* name : {&unit.id, &unit.snapApp, &unit.launcher}) {
        const bool hasControl = std::any_of(name->begin(), name->end(), [](char c) { return c >= 0 && c < ' '; });
        require(Text::repaired(*name) == *name && !(isPlain && hasControl));
    }
    require(text.find(unit.group) != std::string_view::npos);
    return 0;
}
