#pragma once

#include "core/sampling/platform/Processor.hpp"
#include "core/sampling/platform/macos/HostPort.hpp"

namespace ostrivane {

class MacProcessor final : public Processor {
public:
    /// `host` outlives the reader.
    explicit MacProcessor(const HostPort& host) : port(host) {}

    std::optional<CPUTicks> ticks() override;
    std::optional<LoadAverage> loadAverage() override;

private:
    const HostPort& port;
};

} // namespace ostrivane
