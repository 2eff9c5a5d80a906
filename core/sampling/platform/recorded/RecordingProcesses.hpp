#pragma once

#include "core/sampling/platform/Processes.hpp"
#include "core/sampling/platform/recorded/TickNotes.hpp"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ostrivane {

/// Passes questions about processes on and notes the answers: of the readings those that differ from the tick before,
/// for most processes do nothing most of the time.
class RecordingProcesses final : public Processes {
public:
    /// Both outlive the object.
    RecordingProcesses(Processes& other, TickNotes& kept) : asked(other), notes(kept) {}

    const std::vector<ProcessReading>& all() override;
    std::optional<std::string> path(std::int32_t pid) override;
    std::optional<std::vector<std::string>> arguments(std::int32_t pid) override;
    std::int32_t responsiblePID(std::int32_t pid) override;
    std::string userName(std::uint32_t uid) override;
    std::optional<std::string> currentDirectory(std::int32_t pid) override;
    ProcessOrigin origin(std::int32_t pid) override;

private:
    Processes& asked;
    TickNotes& notes;
    std::vector<ProcessReading> noted; ///< of the tick before, ascending by id
    std::set<std::uint32_t> namedUsers;
};

} // namespace ostrivane
