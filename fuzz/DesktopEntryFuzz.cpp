#include "core/attribution/DesktopEntry.hpp"
#include "core/model/Text.hpp"
#include "fuzz/Require.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

using namespace ostrivane;

/// Any text may stand in a desktop entry. What is taken from it is shown and looked for: names are valid UTF-8, and a
/// program is a path that the system reads as we do.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    static const auto locales = DesktopEntry::localeNames({"de_DE.UTF-8@euro", "sr@latin"});
    const auto entry = DesktopEntry::parse(text, locales);
    if (!entry)
        return 0;
    for (const auto* shown : {&entry->name, &entry->icon})
        require(Text::repaired(*shown) == *shown);
    for (const std::string_view exec : {std::string_view(entry->exec), std::string_view(entry->tryExec), text}) {
        const auto command = DesktopCommand::parse(exec);
        require(!command || (!command->program.empty() && command->program.find('\0') == std::string::npos));
    }
    return 0;
}
