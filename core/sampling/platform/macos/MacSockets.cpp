#include "core/sampling/platform/macos/MacSockets.hpp"

#include "core/sampling/platform/NettopParser.hpp"

namespace ostrivane {

namespace {

constexpr double timeout = 4; // seconds

} // namespace

std::optional<PidMap<TrafficTotals>> MacSockets::traffic() {
    // One sample as text, by process, raw numbers, no look-up of names, two columns.
    const auto text =
        commands.run("/usr/bin/nettop", {"-P", "-L", "1", "-x", "-n", "-J", "bytes_in,bytes_out"}, timeout);
    return text ? std::optional(NettopParser::parse(*text)) : std::nullopt;
}

} // namespace ostrivane
