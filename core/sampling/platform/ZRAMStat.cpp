#include "core/sampling/platform/ZRAMStat.hpp"

#include "core/sampling/platform/Scanner.hpp"

namespace ostrivane {

std::optional<std::uint64_t> ZRAMStat::memoryUsed(std::string_view text) {
    Scanner words(Text::trimmed(text));
    words.word();
    words.word();
    const auto used = words.number<std::uint64_t>();
    return words.word().empty() ? std::nullopt : used; // more follows in every kernel: without it the text was cut
}

} // namespace ostrivane
