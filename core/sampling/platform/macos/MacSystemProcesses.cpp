#include "core/sampling/platform/macos/MacSystemProcesses.hpp"

#include "core/sampling/platform/PSParser.hpp"

namespace ostrivane {

namespace {

constexpr double timeout = 4; // seconds

} // namespace

std::optional<PidMap<SystemProcessTotals>> MacSystemProcesses::totals() {
    const auto text = commands.run("/bin/ps", {"-axo", "pid=,time=,rss="}, timeout); // it may see every user's
    return text ? std::optional(PSParser::parse(*text)) : std::nullopt;
}

} // namespace ostrivane
