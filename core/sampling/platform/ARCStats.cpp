#include "core/sampling/platform/ARCStats.hpp"

#include "core/model/Saturating.hpp"
#include "core/sampling/platform/Scanner.hpp"

namespace ostrivane {

std::optional<std::uint64_t> ARCStats::reclaimable(std::string_view text) {
    std::optional<std::uint64_t> size, lowest;
    for (Scanner lines(text); !lines.atEnd() && !(size && lowest);) {
        Scanner words(lines.line());
        const std::string_view name = words.word();
        if (name != "size" && name != "c_min")
            continue;
        words.word(); // the kind of the value
        (name == "size" ? size : lowest) = words.number<std::uint64_t>();
    }
    if (!size || !lowest)
        return std::nullopt;
    return flooredDifference(*size, *lowest);
}

} // namespace ostrivane
