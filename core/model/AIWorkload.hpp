#pragma once

#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// A local AI runtime. Its identity is `pid`.
struct AIWorkload {
    std::int32_t pid = 0;
    std::string runtime;
    std::string processName;
    std::vector<std::string> models;
    std::optional<std::uint64_t> modelMemory; ///< bytes
    double cpu = 0;                           ///< cores
    std::optional<double> gpu;
    std::uint64_t memory = 0; ///< bytes
    std::vector<std::uint16_t> ports;
    std::optional<double> uptime; ///< seconds
    std::optional<std::string> projectKey;

    friend bool operator==(const AIWorkload&, const AIWorkload&) = default;
};
BOOST_DESCRIBE_STRUCT(AIWorkload, (),
                      (pid, runtime, processName, models, modelMemory, cpu, gpu, memory, ports, uptime, projectKey))
static_assert(describesEveryMember<AIWorkload>);

} // namespace ostrivane
