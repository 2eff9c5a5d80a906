#include "core/sampling/platform/PSParser.hpp"

#include "core/model/Text.hpp"

#include <cmath>

namespace ostrivane::PSParser {

namespace {

constexpr double secondsPerDay = 86'400;
constexpr double centisPerSecond = 100;
constexpr double tooManyCentis = 18'446'744'073'709'551'616.0; // 2^64

std::optional<double> parseSeconds(std::string_view text) {
    std::optional<double> total;
    while (!text.empty()) {
        const std::size_t colon = text.find(':');
        const std::string_view part = text.substr(0, colon);
        text.remove_prefix(colon == std::string_view::npos ? text.size() : colon + 1);
        if (part.empty())
            continue;
        const auto value = Text::number<double>(part);
        if (!value)
            return std::nullopt;
        total = total.value_or(0) * 60 + *value;
    }
    return total;
}

} // namespace

PidMap<SystemProcessTotals> parse(std::string_view text) {
    PidMap<SystemProcessTotals> found;
    for (const std::string_view line : Text::lines(text)) {
        const auto words = Text::words(line);
        if (words.size() < 3)
            continue;
        const auto pid = Text::number<std::int32_t>(words[0]);
        const auto centis = parseCPUTime(words[1]);
        const auto rssKB = Text::number<std::uint64_t>(words[2]);
        if (pid && centis && rssKB)
            found[*pid] = {.centis = *centis, .rssKB = *rssKB};
    }
    return found;
}

std::optional<std::uint64_t> parseCPUTime(std::string_view text) {
    double days = 0;
    if (const std::size_t dash = text.find('-'); dash != std::string_view::npos) {
        days = static_cast<double>(Text::number<std::int64_t>(text.substr(0, dash)).value_or(0));
        text.remove_prefix(dash + 1);
    }
    const auto seconds = parseSeconds(text);
    if (!seconds)
        return std::nullopt;
    // To the nearest: as a binary fraction 0.29 is a little less, and would fall to 28.
    const double centis = std::round((days * secondsPerDay + *seconds) * centisPerSecond);
    if (!(centis >= 0 && centis < tooManyCentis)) // also when many parts have made it infinite
        return std::nullopt;
    return static_cast<std::uint64_t>(centis);
}

} // namespace ostrivane::PSParser
