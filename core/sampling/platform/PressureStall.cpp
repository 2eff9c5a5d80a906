#include "core/sampling/platform/PressureStall.hpp"

#include "core/sampling/platform/Scanner.hpp"

namespace ostrivane {

namespace {

/// The first figure of "avg10=0.00 avg60=0.12 avg300=0.31 total=8123456".
std::optional<double> lastTenSeconds(Scanner words) {
    constexpr std::string_view name = "avg10=";
    const std::string_view word = words.word();
    if (!word.starts_with(name) || words.word().empty()) // the last word of a line may be cut short
        return std::nullopt;
    const auto percent = Text::number<double>(word.substr(name.size()));
    return percent && *percent >= 0 && *percent <= 100 ? percent : std::nullopt;
}

} // namespace

std::optional<PressureStall> PressureStall::parse(std::string_view text) {
    std::optional<double> some, full;
    for (Scanner lines(text); !lines.atEnd();) {
        Scanner words(lines.line());
        const std::string_view kind = words.word();
        if (kind == "some")
            some = lastTenSeconds(words);
        else if (kind == "full")
            full = lastTenSeconds(words);
    }
    if (!some || !full)
        return std::nullopt;
    return PressureStall{*some, *full};
}

} // namespace ostrivane
