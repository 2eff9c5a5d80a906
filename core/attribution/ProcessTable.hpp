#pragma once

#include "core/attribution/AppGrouper.hpp"
#include "core/model/PidMap.hpp"

#include <cstdint>
#include <vector>

namespace ostrivane {

/// The processes of one tick by their pid. Made anew on every tick, so it must be cheap: a flat table.
class ProcessTable {
public:
    explicit ProcessTable(const std::vector<AppGrouper::Process>& processes) {
        byPID.reserve(processes.size());
        for (const AppGrouper::Process& process : processes)
            byPID.emplace(process.pid, &process);
    }

    /// Null when there is none.
    const AppGrouper::Process* find(std::int32_t pid) const {
        const auto found = byPID.find(pid);
        return found == byPID.end() ? nullptr : found->second;
    }

private:
    PidMap<const AppGrouper::Process*> byPID;
};

} // namespace ostrivane
