#pragma once

#include <string>

namespace ostrivane {

struct SystemSnapshot;

/// The whole snapshot as one line of JSON: every field by its name, absent optionals as `null`.
std::string snapshotJSON(const SystemSnapshot& snapshot);

} // namespace ostrivane
