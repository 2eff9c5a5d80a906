#pragma once

#include "core/model/Described.hpp"

#include <cstdint>
#include <string>

namespace ostrivane {

/// A socket on which a process waits for others.
struct ListeningPort {
    std::uint16_t port = 0;
    std::string address;
    std::string proto;
    std::int32_t pid = 0;

    bool isLoopback() const;
    bool isWildcard() const;
    /// `proto`, `address`, `port` and `pid` joined by "-".
    std::string id() const;

    friend bool operator==(const ListeningPort&, const ListeningPort&) = default;
};
BOOST_DESCRIBE_STRUCT(ListeningPort, (), (port, address, proto, pid))
static_assert(describesEveryMember<ListeningPort>);

} // namespace ostrivane
