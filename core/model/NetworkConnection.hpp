#pragma once

#include "core/model/Described.hpp"

#include <cstdint>
#include <string>

namespace ostrivane {

/// An open connection of a process.
struct NetworkConnection {
    std::int32_t pid = 0;
    std::string proto;
    std::string localAddress;
    std::uint16_t localPort = 0;
    std::string remoteAddress;
    std::uint16_t remotePort = 0;
    std::string state;

    /// `pid`, `localPort`, `remoteAddress` and `remotePort` joined by "-".
    std::string id() const;

    friend bool operator==(const NetworkConnection&, const NetworkConnection&) = default;
};
BOOST_DESCRIBE_STRUCT(NetworkConnection, (), (pid, proto, localAddress, localPort, remoteAddress, remotePort, state))
static_assert(describesEveryMember<NetworkConnection>);

} // namespace ostrivane
