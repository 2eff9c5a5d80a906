#pragma once

#include "cli/Commands.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <functional>
#include <string>

namespace ostrivane::cli {

class Session;
struct Source;

/// Hands on each snapshot until `take` answers false or the recording ends. What goes wrong is said on standard error.
ExitStatus eachSnapshot(const Source& source,
                        const std::function<bool(const SharedSnapshot&, const Session& session)>& take);

struct ReadingOfNow {
    SharedSnapshot snapshot; ///< null when there was none, or something went wrong
    std::string limits;      ///< of the machine's figures
};

/// What the computer does now: of a recording the last tick; here the first one that comes at least `seconds` after
/// another, since rates need two. When something goes wrong `status` says so.
ReadingOfNow snapshotOfNow(const Source& source, double seconds, ExitStatus& status);

} // namespace ostrivane::cli
