#pragma once

#include "core/sampling/platform/Commands.hpp"
#include "core/sampling/platform/Sockets.hpp"

namespace ostrivane {

class MacSockets final : public Sockets {
public:
    /// `tools` outlives the reader.
    explicit MacSockets(Commands& tools) : commands(tools) {}

    std::optional<PidMap<TrafficTotals>> traffic() override;

private:
    Commands& commands;
};

} // namespace ostrivane
