#pragma once

#include "app/widgets/TableColumn.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <vector>

namespace ostrivane {

/// One of the busiest processes; points into a snapshot.
struct CPUProcessRow {
    const ProcessSnapshot* process = nullptr;
    const ApplicationSnapshot* app = nullptr; ///< null: it belongs to none that is known
    Date now;
};

std::vector<CPUProcessRow> cpuProcessRows(const SystemSnapshot& snapshot);
std::vector<TableColumn<CPUProcessRow>> cpuProcessColumns();

/// One of the busiest applications; points into a snapshot.
struct CPUAppRow {
    const ApplicationSnapshot* app = nullptr;
    bool isHidden = false; ///< the system tells nothing of what it uses
    Date now;
};

std::vector<CPUAppRow> cpuAppRows(const SystemSnapshot& snapshot);
std::vector<TableColumn<CPUAppRow>> cpuAppColumns();

} // namespace ostrivane
