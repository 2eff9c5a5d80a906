#pragma once

#include <string>

namespace ostrivane {
struct SystemSnapshot;
}

namespace ostrivane::cli {

/// A snapshot for a person to read: lines of a label and its figures, without colours or cursor movements.
std::string summary(const SystemSnapshot& snapshot);

} // namespace ostrivane::cli
