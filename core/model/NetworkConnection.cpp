#include "core/model/NetworkConnection.hpp"

#include <fmt/format.h>

namespace ostrivane {

std::string NetworkConnection::id() const {
    return fmt::format("{}-{}-{}-{}", pid, localPort, remoteAddress, remotePort);
}

} // namespace ostrivane
