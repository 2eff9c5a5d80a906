#pragma once

#include "core/sampling/platform/Commands.hpp"
#include "core/sampling/platform/SystemProcesses.hpp"

namespace ostrivane {

class MacSystemProcesses final : public SystemProcesses {
public:
    /// `tools` outlives the reader.
    explicit MacSystemProcesses(Commands& tools) : commands(tools) {}

    std::optional<PidMap<SystemProcessTotals>> totals() override;

private:
    Commands& commands;
};

} // namespace ostrivane
