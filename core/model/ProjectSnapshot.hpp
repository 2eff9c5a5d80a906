#pragma once

#include "core/model/Date.hpp"
#include "core/model/Described.hpp"
#include "core/model/DevServer.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// What runs for one project folder. Its identity is `key`.
struct ProjectSnapshot {
    std::string key;
    std::string name;
    std::string rootPath;
    std::vector<std::int32_t> pids;
    std::vector<std::uint16_t> ports;
    std::vector<std::string> kinds;
    double cpu = 0;           ///< cores
    std::uint64_t memory = 0; ///< bytes
    double diskReadRate = 0;  ///< bytes per second
    double diskWriteRate = 0; ///< bytes per second
    double netInRate = 0;     ///< bytes per second
    double netOutRate = 0;    ///< bytes per second
    std::vector<DevServer> servers;
    std::optional<Date> oldestStart;

    friend bool operator==(const ProjectSnapshot&, const ProjectSnapshot&) = default;
};
BOOST_DESCRIBE_STRUCT(ProjectSnapshot, (),
                      (key, name, rootPath, pids, ports, kinds, cpu, memory, diskReadRate, diskWriteRate, netInRate,
                       netOutRate, servers, oldestStart))
static_assert(describesEveryMember<ProjectSnapshot>);

} // namespace ostrivane
