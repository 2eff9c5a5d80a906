#pragma once

#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// A local development server. Its identity is `pid`.
struct DevServer {
    std::int32_t pid = 0;
    std::string name;
    std::string kind;
    std::vector<std::uint16_t> ports;
    std::uint64_t memory = 0;      ///< bytes
    double cpu = 0;                ///< cores
    double uptime = 0;             ///< seconds
    std::optional<double> idleFor; ///< seconds
    bool isIdle = false;
    std::string activity; ///< a phrase for the interface
    std::optional<std::string> projectKey;

    friend bool operator==(const DevServer&, const DevServer&) = default;
};
BOOST_DESCRIBE_STRUCT(DevServer, (),
                      (pid, name, kind, ports, memory, cpu, uptime, idleFor, isIdle, activity, projectKey))
static_assert(describesEveryMember<DevServer>);

} // namespace ostrivane
