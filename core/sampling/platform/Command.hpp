#pragma once

#include <optional>
#include <string>
#include <vector>

/// Runs a tool of the system as a child process.
namespace ostrivane::Command {

/// What the tool wrote to its standard output, as valid UTF-8; the exit status is not looked at, and a tool that wrote
/// nothing gives empty text. Absent when `path` is no executable file, when launching fails, and when the tool has not
/// closed its output and ended within `timeout` seconds: there is no partial output.
///
/// The tool begins as `ChildLaunch` tells, with `LC_ALL=C`. One that is late is asked to end and soon after killed,
/// with every process of its session's first group: children that left for a session of their own are all that can
/// outlive it. So is one that writes more than 64 MiB. The caller is held until the tool has ended, at most `timeout`
/// and about half a second; there is no second thread, since the caller itself empties the pipe. May be called from
/// several threads at once.
std::optional<std::string> run(const std::string& path, const std::vector<std::string>& arguments, double timeout);

} // namespace ostrivane::Command
