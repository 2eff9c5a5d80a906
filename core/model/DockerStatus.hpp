#pragma once

#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// A container that the Docker engine knows. Its identity is `id`.
struct DockerContainer {
    std::string id;
    std::string name;
    std::string image;
    std::string state;
    std::string status;
    std::vector<std::string> ports;
    std::optional<std::string> project;

    friend bool operator==(const DockerContainer&, const DockerContainer&) = default;
};
BOOST_DESCRIBE_STRUCT(DockerContainer, (), (id, name, image, state, status, ports, project))
static_assert(describesEveryMember<DockerContainer>);

/// What the Docker engine answered.
struct DockerStatus {
    std::optional<std::string> socketPath;
    bool reachable = false;
    std::vector<DockerContainer> containers;
    std::optional<std::string> error;

    static const DockerStatus unavailable;
    friend bool operator==(const DockerStatus&, const DockerStatus&) = default;
};
BOOST_DESCRIBE_STRUCT(DockerStatus, (), (socketPath, reachable, containers, error))
static_assert(describesEveryMember<DockerStatus>);
inline const DockerStatus DockerStatus::unavailable{};

} // namespace ostrivane
