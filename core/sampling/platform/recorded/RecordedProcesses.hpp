#pragma once

#include "core/sampling/platform/Processes.hpp"
#include "core/sampling/platform/recorded/Playback.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// Processes from a recording.
class RecordedProcesses final : public Processes {
public:
    /// `asked` outlives the object.
    explicit RecordedProcesses(Playback& asked) : playback(asked) {}

    const std::vector<ProcessReading>& all() override;
    std::optional<std::string> path(std::int32_t pid) override;
    std::optional<std::vector<std::string>> arguments(std::int32_t pid) override;
    std::int32_t responsiblePID(std::int32_t pid) override;
    std::string userName(std::uint32_t uid) override;
    std::optional<std::string> currentDirectory(std::int32_t pid) override;
    ProcessOrigin origin(std::int32_t pid) override;

private:
    void forget(std::int32_t pid);

    Playback& playback;
    std::vector<ProcessReading> readings;
};

} // namespace ostrivane
