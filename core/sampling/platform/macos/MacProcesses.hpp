#pragma once

#include "core/sampling/platform/Processes.hpp"
#include "core/sampling/platform/UserNames.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// Processes by libproc and sysctl. Of another user's process the kernel tells little more than that it is there: no
/// usage, no threads, no arguments, no working directory.
class MacProcesses final : public Processes {
public:
    /// The process that the system holds responsible for another; less than 1 for none.
    using ResponsibleFunction = std::int32_t (*)(std::int32_t);

    /// The system's own, which it exports but does not publish; null where it has none.
    static ResponsibleFunction systemResponsibleFunction();

    explicit MacProcesses(ResponsibleFunction function = systemResponsibleFunction()) : responsible(function) {}

    const std::vector<ProcessReading>& all() override;
    std::optional<std::string> path(std::int32_t pid) override;
    std::optional<std::vector<std::string>> arguments(std::int32_t pid) override;
    std::int32_t responsiblePID(std::int32_t pid) override;
    std::string userName(std::uint32_t uid) override;
    std::optional<std::string> currentDirectory(std::int32_t pid) override;
    /// Empty: the system groups processes by the responsible one.
    ProcessOrigin origin(std::int32_t pid) override;

private:
    ResponsibleFunction responsible;
    std::vector<ProcessReading> readings;
    UserNames userNames;
};

} // namespace ostrivane
