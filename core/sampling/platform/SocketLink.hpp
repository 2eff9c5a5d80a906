#pragma once

#include "core/model/Text.hpp"

#include <cstdint>
#include <optional>
#include <string_view>

/// Links in Linux's /proc/PID/fd that stand for sockets.
namespace ostrivane::SocketLink {

/// The number in "socket:[NUMBER]"; absent for a link to anything else.
inline std::optional<std::uint32_t> parse(std::string_view target) {
    constexpr std::string_view start = "socket:[";
    if (!target.starts_with(start) || !target.ends_with(']'))
        return std::nullopt;
    target.remove_prefix(start.size());
    target.remove_suffix(1);
    return Text::number<std::uint32_t>(target);
}

} // namespace ostrivane::SocketLink
