#include "core/model/SnapshotJSON.hpp"

#include "core/model/JSON.hpp"
#include "core/model/SystemSnapshot.hpp"

namespace ostrivane {

std::string snapshotJSON(const SystemSnapshot& snapshot) {
    return JSON::text(snapshot);
}

std::string recordsJSON(const std::vector<ProcessSnapshot>& processes) {
    return JSON::text(processes);
}

std::string recordsJSON(const std::vector<ApplicationSnapshot>& applications) {
    return JSON::text(applications);
}

} // namespace ostrivane
