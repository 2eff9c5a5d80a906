#pragma once

#include "core/sampling/platform/Host.hpp"
#include "core/sampling/platform/macos/HostPort.hpp"

namespace ostrivane {

class MacHost final : public Host {
public:
    /// `host` outlives the reader.
    explicit MacHost(const HostPort& host) : port(host) {}

    HostInfo info() override;
    std::optional<double> uptime() override;

private:
    const HostPort& port;
};

} // namespace ostrivane
