#pragma once

#include "app/widgets/TableColumn.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <functional>
#include <optional>
#include <vector>

namespace ostrivane {

/// An application by what it holds of the memory; points into a snapshot.
struct MemoryAppRow {
    const ApplicationSnapshot* app = nullptr;
    bool isHidden = false;        ///< the system tells nothing of what it uses
    double largest = 0;           ///< bytes of the application that holds most
    double total = 0;             ///< bytes of the machine; 0 where that is not known
    std::optional<double> change; ///< bytes over the last hour
};

/// @param change  of an application, bytes over the last hour
std::vector<MemoryAppRow> memoryAppRows(const SystemSnapshot& snapshot,
                                        const std::function<std::optional<double>(const ApplicationSnapshot&)>& change);
std::vector<TableColumn<MemoryAppRow>> memoryAppColumns();

/// An application by what it uses of the graphics processor; points into a snapshot.
struct GPUAppRow {
    const ApplicationSnapshot* app = nullptr;
    bool isHidden = false; ///< the system tells nothing of its memory
    double largest = 0;    ///< fraction of the application that uses most
};

/// Those whose use is known.
std::vector<GPUAppRow> gpuAppRows(const SystemSnapshot& snapshot);
std::vector<TableColumn<GPUAppRow>> gpuAppColumns();

} // namespace ostrivane
