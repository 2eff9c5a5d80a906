#pragma once

#include "app/model/AppState.hpp"
#include "cli/Commands.hpp"

#include <optional>

namespace ostrivane::cli {

struct Source;

/// The state of a model once it has judged the machine: here as soon as all readings are in, of a recording at its
/// end. When there is none, `status` says that something went wrong, which stands on standard error.
std::optional<AppState> judgedMachine(const Source& source, ExitStatus& status);

} // namespace ostrivane::cli
