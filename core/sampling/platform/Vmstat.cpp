#include "core/sampling/platform/Vmstat.hpp"

#include "core/sampling/platform/Scanner.hpp"

namespace ostrivane {

std::optional<Vmstat::SwapTraffic> Vmstat::parse(std::string_view text) {
    std::optional<std::uint64_t> in, out;
    for (Scanner lines(text); !lines.atEnd() && !(in && out);) {
        const std::string_view line = lines.line();
        if (!line.starts_with("pswp"))
            continue;
        Scanner words(line);
        const std::string_view name = words.word();
        if (name == "pswpin")
            in = words.number<std::uint64_t>();
        else if (name == "pswpout")
            out = words.number<std::uint64_t>();
    }
    if (!in || !out)
        return std::nullopt;
    return SwapTraffic{*in, *out};
}

} // namespace ostrivane
