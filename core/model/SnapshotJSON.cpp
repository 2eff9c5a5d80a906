#include "core/model/SnapshotJSON.hpp"

#include "core/model/JSON.hpp"
#include "core/model/SystemSnapshot.hpp"

namespace ostrivane {

std::string snapshotJSON(const SystemSnapshot& snapshot) {
    return JSON::text(snapshot);
}

} // namespace ostrivane
