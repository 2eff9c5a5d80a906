#pragma once

#include "core/model/ProcessSnapshot.hpp"

#include <vector>

namespace ostrivane::BackgroundTrim {

/// Whether a process is worth handing on while nobody looks: it works, is large, is development tooling, or writes to
/// disk. Keeps the cost of the consumers low in the background.
bool keeps(const ProcessSnapshot& process);

/// The processes that are kept, in their order.
std::vector<ProcessSnapshot> trimmed(std::vector<ProcessSnapshot> processes);

} // namespace ostrivane::BackgroundTrim
