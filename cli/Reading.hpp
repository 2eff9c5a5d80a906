#pragma once

#include "cli/Commands.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <functional>

namespace ostrivane::cli {

struct Source;

/// Hands on each snapshot until `take` answers false or the recording ends. What goes wrong is said on standard error.
ExitStatus eachSnapshot(const Source& source, const std::function<bool(const SharedSnapshot&)>& take);

/// What the computer does now: of a recording the last tick; here the first one that comes at least `seconds` after
/// another, since rates need two. Null when there was none, or something went wrong: then `status` says so.
SharedSnapshot snapshotOfNow(const Source& source, double seconds, ExitStatus& status);

} // namespace ostrivane::cli
