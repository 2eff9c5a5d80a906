#include "core/sampling/platform/NettopParser.hpp"

#include "core/model/Saturating.hpp"
#include "core/model/Text.hpp"

#include <optional>
#include <utility>

namespace ostrivane::NettopParser {

namespace {

/// What stands before the next comma, taken off `rest`; absent when nothing is left to take.
std::optional<std::string_view> takeField(std::optional<std::string_view>& rest) {
    if (!rest)
        return std::nullopt;
    const std::size_t comma = rest->find(',');
    const std::string_view field = rest->substr(0, comma);
    rest = comma == std::string_view::npos ? std::nullopt : std::optional(rest->substr(comma + 1));
    return field;
}

std::optional<std::int32_t> processOf(std::string_view name) {
    const std::size_t point = name.rfind('.');
    return point == std::string_view::npos ? std::nullopt : Text::number<std::int32_t>(name.substr(point + 1));
}

std::optional<std::pair<std::int32_t, TrafficTotals>> parseLine(std::string_view line) {
    std::optional<std::string_view> rest = line;
    const auto name = takeField(rest);
    const auto in = takeField(rest);
    const auto out = takeField(rest);
    if (!name || !in || !out)
        return std::nullopt;
    const auto pid = processOf(*name);
    const auto bytesIn = Text::number<std::uint64_t>(*in);
    const auto bytesOut = Text::number<std::uint64_t>(*out);
    if (!pid || !bytesIn || !bytesOut)
        return std::nullopt;
    return std::pair(*pid, TrafficTotals{.bytesIn = *bytesIn, .bytesOut = *bytesOut});
}

} // namespace

PidMap<TrafficTotals> parse(std::string_view text) {
    PidMap<TrafficTotals> found;
    bool headerSeen = false;
    for (const std::string_view line : Text::lines(text)) {
        if (line.empty())
            continue;
        if (!std::exchange(headerSeen, true))
            continue;
        const auto entry = parseLine(line);
        if (!entry)
            continue;
        TrafficTotals& totals = found[entry->first];
        totals.bytesIn = saturatingSum(totals.bytesIn, entry->second.bytesIn);
        totals.bytesOut = saturatingSum(totals.bytesOut, entry->second.bytesOut);
    }
    return found;
}

} // namespace ostrivane::NettopParser
