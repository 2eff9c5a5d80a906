#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// The tools of a machine. Nothing here throws.
class Commands {
public:
    virtual ~Commands() = default;

    /// What the tool at `path` wrote to its standard output, as valid UTF-8. Absent when it cannot be run, and when it
    /// takes longer than `timeout` seconds; nothing written is empty text.
    virtual std::optional<std::string> run(const std::string& path, const std::vector<std::string>& arguments,
                                           double timeout) = 0;
};

} // namespace ostrivane
