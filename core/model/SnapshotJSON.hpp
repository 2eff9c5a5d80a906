#pragma once

#include <string>
#include <vector>

namespace ostrivane {

struct ApplicationSnapshot;
struct ProcessSnapshot;
struct SystemSnapshot;

/// The whole snapshot as one line of JSON: every field by its name, absent optionals as `null`.
std::string snapshotJSON(const SystemSnapshot& snapshot);

/// Some of its records, as they stand in the snapshot: an array on one line.
std::string recordsJSON(const std::vector<ProcessSnapshot>& processes);
std::string recordsJSON(const std::vector<ApplicationSnapshot>& applications);

} // namespace ostrivane
