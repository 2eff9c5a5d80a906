#pragma once

#include <cstddef>

/// How many descriptors this process may have open: a soft limit, which it may raise up to a hard one. The usual 1,024
/// are fewer than a busy machine has processes. Raised is the limit of this program alone: children begin with the one
/// that it began with, since programs that use `select` fail with more.
namespace ostrivane::DescriptorLimit {

/// Raises the soft limit to the hard one. For the start of the program.
void raise();

/// How many may be kept open for later: half of the soft limit as it is now. The other half is for the rest of the
/// program.
std::size_t budget();

/// Puts the limit from before `raise` back, if it was raised. For a child that is about to become another program: it
/// does nothing that is not allowed between `fork` and `exec`.
void putBack();

} // namespace ostrivane::DescriptorLimit
