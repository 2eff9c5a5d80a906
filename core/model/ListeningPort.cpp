#include "core/model/ListeningPort.hpp"

#include <fmt/format.h>

namespace ostrivane {

bool ListeningPort::isLoopback() const {
    return address == "127.0.0.1" || address == "::1" || address.starts_with("localhost");
}

bool ListeningPort::isWildcard() const {
    return address == "*" || address == "0.0.0.0" || address == "::";
}

std::string ListeningPort::id() const {
    return fmt::format("{}-{}-{}-{}", proto, address, port, pid);
}

} // namespace ostrivane
