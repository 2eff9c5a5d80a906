#pragma once

#include "core/sampling/platform/Memory.hpp"
#include "core/sampling/platform/macos/HostPort.hpp"

namespace ostrivane {

class MacMemory final : public Memory {
public:
    /// `host` outlives the reader.
    explicit MacMemory(const HostPort& host) : port(host) {}

    std::optional<MemoryReading> reading() override;

private:
    const HostPort& port;
};

} // namespace ostrivane
