#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace ostrivane::cli {

/// Adds "session run", which records while `command` runs. Works as those of `Commands.hpp` do.
void addSessionRunCommand(CLI::App& session, const std::vector<std::string>& command, int& status);

} // namespace ostrivane::cli
